// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/PhotoRef.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace ProjectModel {
namespace {

namespace fs = std::filesystem;

Foundation::Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string keyOf(const PhotoRef& ref) {
    Foundation::BookmarkResolver resolver;
    return identityKey(ref, resolver);
}

TEST(PhotoRefTest, KeyOfALibraryPhotoIsItsIdentifier) {
    EXPECT_EQ(keyOf(LibraryPhotoRef{.localIdentifier = "ABC/L0/001"}), "photoKit:ABC/L0/001");
    EXPECT_EQ(keyOf(LibraryPhotoRef{.localIdentifier = ""}), "photoKit:");
}

TEST(PhotoRefTest, KeyOfAFileIsThePathItsBookmarkLeadsToInStandardForm) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    const fs::path file = folder / "a.jpg";
    std::ofstream{file} << "picture";
    for (const fs::path& path : {file, folder.path() / "sub" / ".." / "." / "a.jpg"}) {
        const auto bookmark = Foundation::makeBookmark(path);
        ASSERT_TRUE(bookmark) << path;
        EXPECT_EQ(keyOf(FilePhotoRef{.bookmark = *bookmark, .displayName = "shown"}),
                  "file:" + file.string());
    }
}

TEST(PhotoRefTest, KeyFollowsARenamedFile) {
    const TemporaryFolder folder;
    std::ofstream{folder / "a.jpg"} << "picture";
    const auto bookmark = Foundation::makeBookmark(folder / "a.jpg");
    ASSERT_TRUE(bookmark);
    fs::rename(folder / "a.jpg", folder / "b.jpg");
    EXPECT_EQ(keyOf(FilePhotoRef{.bookmark = *bookmark, .displayName = "a.jpg"}),
              "file:" + (folder / "b.jpg").string());
}

TEST(PhotoRefTest, KeyDoesNotResolveSymbolicLinks) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    std::ofstream{folder.path() / "real" / "a.jpg"} << "picture";
    fs::create_directory_symlink(folder / "real", folder / "link");
    const auto bookmark = Foundation::makeBookmark(folder.path() / "link" / "a.jpg");
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(keyOf(FilePhotoRef{.bookmark = *bookmark, .displayName = "a.jpg"}),
              "file:" + (folder.path() / "link" / "a.jpg").string());
}

TEST(PhotoRefTest, KeyOfABookmarkThatIsABarePathIsThatTextUnchanged) {
    for (const std::string_view path :
         {"/photos/a.jpg", "/photos/./x/../a.jpg", "relative/ä.jpg", "/a//b/", ""})
        EXPECT_EQ(keyOf(FilePhotoRef{.bookmark = bytesOf(path), .displayName = "shown.jpg"}),
                  "file:" + std::string{path});
}

TEST(PhotoRefTest, KeyOfABookmarkThatIsNeitherResolvableNorTextIsTheDisplayName) {
    for (const std::string_view bookmark : {"\xFF", "\xFF\x01\x00garbage", "/photos/\xC3.jpg", "\x80"})
        EXPECT_EQ(keyOf(FilePhotoRef{.bookmark = bytesOf(bookmark), .displayName = "IMG_1.JPG"}),
                  "file:IMG_1.JPG");
}

TEST(PhotoRefTest, KeyOfALostFileIsItsDisplayName) {
    const TemporaryFolder folder;
    std::ofstream{folder / "a.jpg"} << "picture";
    const auto bookmark = Foundation::makeBookmark(folder / "a.jpg");
    ASSERT_TRUE(bookmark);
    fs::remove(folder / "a.jpg");
    EXPECT_EQ(keyOf(FilePhotoRef{.bookmark = *bookmark, .displayName = "shown.jpg"}), "file:shown.jpg");
}

TEST(PhotoRefTest, TwoUnresolvableFilesOfOneNameShareAKey) {
    EXPECT_EQ(keyOf(FilePhotoRef{.bookmark = {0xFF, 1}, .displayName = "IMG_1.JPG"}),
              keyOf(FilePhotoRef{.bookmark = {0xFF, 2}, .displayName = "IMG_1.JPG"}));
}

TEST(PhotoRefTest, LibraryPhotosAndFilesNeverShareAKey) {
    EXPECT_NE(keyOf(LibraryPhotoRef{.localIdentifier = "a"}),
              keyOf(FilePhotoRef{.bookmark = bytesOf("a"), .displayName = "a"}));
}

} // namespace
} // namespace ProjectModel
