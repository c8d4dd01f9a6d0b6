// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/RenewedResolver.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace std::chrono_literals;
using Platform::RenewedResolver;

TEST(RenewedResolverTest, SearchesATreeOnceALifetimeAndAfreshAfterIt) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "trip/old");
    for (const char* name : {"first.jpg", "second.jpg"})
        std::ofstream{folder / "trip/old" / name} << name;
    const auto first = Foundation::makeBookmark(folder / "trip/old/first.jpg");
    const auto second = Foundation::makeBookmark(folder / "trip/old/second.jpg");
    ASSERT_TRUE(first && second);

    std::chrono::steady_clock::time_point now;
    RenewedResolver resolver{60s, [&now] { return now; }};
    std::filesystem::rename(folder / "trip/old/first.jpg", folder / "trip/old/renamed.jpg");
    EXPECT_EQ(resolver.resolvedFile(*first), folder / "trip/old/renamed.jpg");

    // What was seen of the tree stays true for a while, or each look-up would search it.
    std::filesystem::rename(folder / "trip/old/second.jpg", folder / "trip/old/other.jpg");
    now += 59s;
    EXPECT_EQ(resolver.resolvedFile(*second), folder / "trip/old/second.jpg");
    now += 1s;
    EXPECT_EQ(resolver.resolvedFile(*second), folder / "trip/old/other.jpg");
}

} // namespace
