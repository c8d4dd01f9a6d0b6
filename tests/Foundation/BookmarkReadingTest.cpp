// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/BookmarkedFile.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string_view>

namespace {

using Foundation::Bytes;
using Foundation::readBookmark;

Bytes bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(BookmarkReadingTest, TellsWhatTheFileWasAlsoWhenItIsGone) {
    const TemporaryFolder folder;
    std::ofstream{folder / "a.jpg"} << "12345";
    const auto bookmark = Foundation::makeBookmark(folder / "a.jpg");
    std::filesystem::remove(folder / "a.jpg");
    const auto file = readBookmark(bookmark.value());
    ASSERT_TRUE(file && file->identity);
    EXPECT_EQ(file->path, folder / "a.jpg");
    EXPECT_EQ(file->identity->size, 5U);
    EXPECT_NE(file->identity->inode, 0U);
}

TEST(BookmarkReadingTest, ABarePathHasNoIdentity) {
    const auto file = readBookmark(bytes("/photos/./a.jpg"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->path, "/photos/a.jpg");
    EXPECT_FALSE(file->identity);
}

TEST(BookmarkReadingTest, OtherBytesSayNothing) {
    EXPECT_FALSE(readBookmark({}));
    EXPECT_FALSE(readBookmark(bytes("photos/a.jpg")));
    EXPECT_FALSE(readBookmark(Bytes{0xFF, 9, 9}));
    EXPECT_FALSE(readBookmark(bytes("/a\xFF")));
}

} // namespace
