#include <PhotoSources/StandardErrorFilter.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

namespace {

using PhotoSources::StandardErrorFilter;

TEST(StandardErrorFilterTest, HoldsBackOnlyLinesWithThePrefix) {
    testing::internal::CaptureStderr();
    {
        const StandardErrorFilter outer("./noise/");
        std::fprintf(stderr, "./noise/a.cc:1: failed\n");
        {
            const StandardErrorFilter inner("./noise/");
            std::cerr << "the music file is missing\n./noise/b.cc:2: failed\n";
        }
        std::cerr << "no end";
    }
    std::cerr << "\n./noise/ is passed on again\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "the music file is missing\nno end\n./noise/ is passed on again\n");
}

} // namespace
