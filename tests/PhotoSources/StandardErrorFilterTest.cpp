// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/StandardErrorFilter.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

namespace {

using PhotoSources::StandardErrorFilter;

TEST(StandardErrorFilterTest, HoldsBackOnlyTheLibrariesLines) {
    testing::internal::CaptureStderr();
    {
        const StandardErrorFilter outer;
        std::fprintf(stderr, "./lib/jxl/a.cc:1: failed\n");
        {
            const StandardErrorFilter inner;
            std::cerr << "the music file is missing\nSPS error: b failed\n";
        }
        std::cerr << "no end";
    }
    std::cerr << "\n./lib/jxl/ is passed on again\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "the music file is missing\nno end\n./lib/jxl/ is passed on again\n");
}

} // namespace
