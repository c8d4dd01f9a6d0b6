// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/ThumbnailMemory.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Platform::Thumbnail;
using Platform::ThumbnailKey;
using Platform::ThumbnailMemory;

ThumbnailKey key(const std::string& name, int maxPixel = 256) {
    return {ProjectModel::LibraryPhotoRef{name}, maxPixel};
}

/// Of a thousand bytes and more.
Thumbnail picture() {
    return std::make_shared<const Foundation::Image>(
        Foundation::Image{20, 20, std::vector<std::uint8_t>(1200)});
}

TEST(ThumbnailMemoryTest, FindsWhatWasPutIn) {
    ThumbnailMemory memory{1 << 20};
    const Thumbnail a = picture();
    memory.insert(key("a"), "content", a);
    EXPECT_EQ(memory.find(key("a")), a);
    EXPECT_EQ(memory.find(key("a", 128)), std::nullopt);
    EXPECT_EQ(memory.find(key("b")), std::nullopt);
}

TEST(ThumbnailMemoryTest, WhatWasMadeOfOtherContentDoesNotCount) {
    ThumbnailMemory memory{1 << 20};
    memory.insert(key("a"), "before", picture());
    EXPECT_NE(memory.find(key("a"), "before"), std::nullopt);
    EXPECT_EQ(memory.find(key("a"), "after"), std::nullopt);
}

TEST(ThumbnailMemoryTest, StaysWithinItsBoundAndDropsWhatWasNotUsedLongest) {
    ThumbnailMemory memory{4000};
    memory.insert(key("a"), "", picture());
    memory.insert(key("b"), "", picture());
    (void)memory.find(key("a"));
    memory.insert(key("c"), "", picture());
    EXPECT_TRUE(memory.find(key("a")));
    EXPECT_FALSE(memory.find(key("b")));
    EXPECT_TRUE(memory.find(key("c")));
    EXPECT_LE(memory.bytes(), 4000U);
}

TEST(ThumbnailMemoryTest, APictureLargerThanTheBoundIsNotKeptAndTakesNothingElseAway) {
    ThumbnailMemory memory{2000};
    memory.insert(key("a"), "", picture());
    memory.insert(key("b"), "",
                  std::make_shared<const Foundation::Image>(
                      Foundation::Image{100, 100, std::vector<std::uint8_t>(30000)}));
    EXPECT_TRUE(memory.find(key("a")));
    EXPECT_FALSE(memory.find(key("b")));
}

TEST(ThumbnailMemoryTest, ReplacingDoesNotCountTwice) {
    ThumbnailMemory memory{1 << 20};
    memory.insert(key("a"), "1", picture());
    const std::size_t once = memory.bytes();
    memory.insert(key("a"), "2", picture());
    EXPECT_EQ(memory.bytes(), once);
}

TEST(ThumbnailMemoryTest, RemembersWhichPhotosHaveNoneUntilToldToForget) {
    ThumbnailMemory memory{1 << 20};
    memory.insert(key("missing"), "", nullptr);
    memory.insert(key("a"), "", picture());
    EXPECT_EQ(memory.find(key("missing")), Thumbnail{});
    memory.forgetMissing();
    EXPECT_EQ(memory.find(key("missing")), std::nullopt);
    EXPECT_TRUE(memory.find(key("a")));
}

TEST(ThumbnailMemoryTest, AProjectFullOfMissingPhotosIsBoundedToo) {
    ThumbnailMemory memory{100'000};
    for (int i = 0; i < 10'000; ++i)
        memory.insert(key(std::to_string(i)), "", nullptr);
    EXPECT_LE(memory.bytes(), 100'000U);
    EXPECT_FALSE(memory.find(key("0")));
    EXPECT_TRUE(memory.find(key("9999")));
}

} // namespace
