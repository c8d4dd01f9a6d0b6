// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace Foundation {
namespace {

namespace fs = std::filesystem;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

class BookmarkTest : public testing::Test {
protected:
    BookmarkTest() {
        m_root = m_folder / "library";
        fs::create_directories(m_root);
    }

    [[nodiscard]] fs::path path(std::string_view name) const { return m_root / name; }

    fs::path write(std::string_view name, std::string_view text = "picture") const {
        const fs::path file = path(name);
        fs::create_directories(file.parent_path());
        std::ofstream{file} << text;
        return file;
    }

    static std::optional<fs::path> resolve(const Bytes& bookmark) {
        return BookmarkResolver{}.resolve(bookmark);
    }

    TemporaryFolder m_folder;
    fs::path m_root;
};

TEST_F(BookmarkTest, LeadsBackToItsFile) {
    const fs::path file = write("trip/a.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(resolve(*bookmark), file);
}

TEST_F(BookmarkTest, IsNeverValidUtf8) {
    const std::optional<Bytes> bookmark = makeBookmark(write("a.jpg"));
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(bookmark->front(), 0xFF);
    EXPECT_FALSE(isValidUtf8({reinterpret_cast<const char*>(bookmark->data()), bookmark->size()}));
}

TEST_F(BookmarkTest, OfAMissingFileCannotBeMade) {
    EXPECT_FALSE(makeBookmark(path("none.jpg")));
    EXPECT_FALSE(makeBookmark(""));
    EXPECT_FALSE(makeBookmark(std::string_view{"/tmp\0/x", 7}));
}

TEST_F(BookmarkTest, FollowsARenameInTheSameFolder) {
    const fs::path file = write("trip/a.jpg");
    write("trip/other.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::rename(file, path("trip/b.jpg"));
    EXPECT_EQ(resolve(*bookmark), path("trip/b.jpg"));
}

TEST_F(BookmarkTest, FollowsAMoveIntoASubfolder) {
    const fs::path file = write("trip/a.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::create_directories(path("trip/best/of/all"));
    fs::rename(file, path("trip/best/of/all/z.jpg"));
    EXPECT_EQ(resolve(*bookmark), path("trip/best/of/all/z.jpg"));
}

TEST_F(BookmarkTest, FollowsAMoveToANeighbouringFolder) {
    const fs::path file = write("2023/trip/a.jpg");
    write("2023/trip/stays.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::create_directories(path("2024/other"));
    fs::rename(file, path("2024/other/a.jpg"));
    EXPECT_EQ(resolve(*bookmark), path("2024/other/a.jpg"));
}

TEST_F(BookmarkTest, FollowsARenameOfTheFolderAbove) {
    const std::optional<Bytes> bookmark = makeBookmark(write("trip/day 1/a.jpg"));
    fs::rename(path("trip"), path("holiday"));
    EXPECT_EQ(resolve(*bookmark), path("holiday/day 1/a.jpg"));
}

TEST_F(BookmarkTest, FollowsTheFileWhenAnotherTookItsPath) {
    const fs::path file = write("trip/a.jpg", "the first");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::rename(file, path("trip/b.jpg"));
    write("trip/a.jpg", "the second");
    EXPECT_EQ(resolve(*bookmark), path("trip/b.jpg"));
}

TEST_F(BookmarkTest, FollowsBothOfTwoFilesThatSwappedNames) {
    const fs::path a = write("a.jpg", "one");
    const fs::path b = write("b.jpg", "two");
    const Bytes first = *makeBookmark(a);
    const Bytes second = *makeBookmark(b);
    fs::rename(a, path("c"));
    fs::rename(b, a);
    fs::rename(path("c"), b);
    BookmarkResolver resolver;
    EXPECT_EQ(resolver.resolve(first), b);
    EXPECT_EQ(resolver.resolve(second), a);
}

TEST_F(BookmarkTest, StaysOnThePathOfAFileThatAnEditorSavedAnew) {
    const fs::path file = write("trip/a.jpg", "before");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    write("trip/a.jpg.tmp", "after the edit");
    fs::rename(path("trip/a.jpg.tmp"), file);
    EXPECT_EQ(resolve(*bookmark), file);
}

TEST_F(BookmarkTest, StaysOnThePathOfAFileThatGrewInPlace) {
    const fs::path file = write("trip/a.jpg", "before");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    std::ofstream{file, std::ios::app} << "and after";
    EXPECT_EQ(resolve(*bookmark), file);
}

TEST_F(BookmarkTest, DoesNotTakeAReusedInodeOfAnotherSizeForTheFile) {
    const fs::path file = write("trip/a.jpg", "the photo");
    const Bytes bookmark = *makeBookmark(file);
    fs::rename(file, path("trip/b.jpg"));
    write("trip/b.jpg", "something else altogether"); // the same inode, other contents
    EXPECT_EQ(resolve(bookmark), std::nullopt);
}

TEST_F(BookmarkTest, OfADeletedFileYieldsNothing) {
    const fs::path file = write("trip/a.jpg");
    write("trip/b.jpg", "another one");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::remove(file);
    EXPECT_EQ(resolve(*bookmark), std::nullopt);
}

TEST_F(BookmarkTest, OfAFileWhoseTreeIsGoneYieldsNothing) {
    const std::optional<Bytes> bookmark = makeBookmark(write("trip/deep/down/a.jpg"));
    fs::remove_all(path("trip"));
    EXPECT_EQ(resolve(*bookmark), std::nullopt);
}

TEST_F(BookmarkTest, OfAFileThatBecameAFolderYieldsNothing) {
    const fs::path file = write("trip/a.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(resolve(*bookmark), std::nullopt);
}

TEST_F(BookmarkTest, OfAFolderFollowsItsRenameWhateverItsSize) {
    fs::create_directories(path("trips/rome"));
    const std::optional<Bytes> bookmark = makeBookmark(path("trips/rome"));
    EXPECT_EQ(resolve(*bookmark), path("trips/rome"));
    fs::rename(path("trips/rome"), path("trips/Rome 2023"));
    for (int i = 0; i < 100; ++i)
        write("trips/Rome 2023/" + std::string(40, 'n') + std::to_string(i));
    EXPECT_EQ(resolve(*bookmark), path("trips/Rome 2023"));
}

TEST_F(BookmarkTest, StandardisesDotsAndTrailingSlashes) {
    const fs::path file = write("trip/a.jpg");
    EXPECT_EQ(makeBookmark(m_root / "." / "trip" / "x" / ".." / "a.jpg"), std::nullopt); // no folder x
    fs::create_directory(path("trip/x"));
    EXPECT_EQ(makeBookmark(m_root / "." / "trip" / "x" / ".." / "a.jpg"), makeBookmark(file));
    EXPECT_EQ(makeBookmark(m_root / "trip/"), makeBookmark(m_root / "trip"));
    EXPECT_EQ(makeBookmark(m_root / "trip/x/.."), makeBookmark(m_root / "trip"));
}

TEST_F(BookmarkTest, MakesRelativePathsAbsolute) {
    const fs::path file = write("trip/a.jpg");
    const fs::path before = fs::current_path();
    fs::current_path(path("trip"));
    const std::optional<Bytes> bookmark = makeBookmark("a.jpg");
    fs::current_path(before);
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(resolve(*bookmark), file);
}

TEST_F(BookmarkTest, KeepsSymbolicLinksUnresolved) {
    write("trip/a.jpg");
    fs::create_directory_symlink(path("trip"), path("latest"));
    const std::optional<Bytes> bookmark = makeBookmark(path("latest/a.jpg"));
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(resolve(*bookmark), path("latest/a.jpg"));
    fs::create_symlink(path("trip/a.jpg"), path("link.jpg"));
    EXPECT_EQ(resolve(*makeBookmark(path("link.jpg"))), path("link.jpg"));
}

TEST_F(BookmarkTest, NamesTheFileThatTheSystemOpensWhereDotsFollowALink) {
    const fs::path file = write("elsewhere/a.jpg");
    fs::create_directories(path("elsewhere/sub"));
    fs::create_directory_symlink(path("elsewhere/sub"), path("link"));
    const std::optional<Bytes> bookmark = makeBookmark(path("link/../a.jpg"));
    ASSERT_TRUE(bookmark);
    const std::optional<fs::path> found = resolve(*bookmark);
    ASSERT_TRUE(found);
    EXPECT_TRUE(fs::equivalent(*found, file));
}

TEST_F(BookmarkTest, HoldsNamesThatAreNotUtf8) {
    const fs::path file = write("trip/caf\xE9.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(resolve(*bookmark), file);
}

TEST_F(BookmarkTest, PrefersTheHardLinkThatKeptTheName) {
    const fs::path file = write("trip/m.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::create_directories(path("trip/x"));
    fs::create_hard_link(file, path("trip/a.jpg"));
    fs::rename(file, path("trip/x/m.jpg"));
    EXPECT_EQ(resolve(*bookmark), path("trip/x/m.jpg"));
}

TEST_F(BookmarkTest, FindsAMovedFileAfterTheDeviceNumberChanged) {
    const fs::path file = write("trip/a.jpg");
    Bytes bookmark = *makeBookmark(file);
    bookmark[3] ^= 0x55; // the lowest byte of the device
    EXPECT_EQ(resolve(bookmark), file);
    fs::create_directories(path("trip/kept"));
    fs::rename(file, path("trip/kept/a.jpg"));
    EXPECT_EQ(resolve(bookmark), path("trip/kept/a.jpg"));
}

TEST_F(BookmarkTest, DoesNotFollowAFileIntoTheTrash) {
    const fs::path file = write("trip/a.jpg");
    const std::optional<Bytes> bookmark = makeBookmark(file);
    fs::create_directories(path(".Trash-1000/files"));
    fs::rename(file, path(".Trash-1000/files/a.jpg"));
    EXPECT_EQ(resolve(*bookmark), std::nullopt);
}

TEST_F(BookmarkTest, ResolverSearchesATreeOnceForThousandsOfMissingFiles) {
    std::vector<Bytes> bookmarks;
    for (int i = 0; i < 2'000; ++i)
        write("library/" + std::to_string(i % 50) + "/IMG_" + std::to_string(i) + ".jpg", "x");
    for (const auto& entry : fs::recursive_directory_iterator(path("library")))
        if (entry.is_regular_file())
            bookmarks.push_back(*makeBookmark(entry.path()));
    const fs::path kept = path("library/0");
    for (int i = 1; i < 50; ++i)
        fs::remove_all(path("library/" + std::to_string(i)));
    BookmarkResolver resolver;
    std::size_t found = 0;
    for (const Bytes& bookmark : bookmarks)
        found += resolver.resolve(bookmark).has_value();
    EXPECT_EQ(found, 40U);
    // A file that appears after the search is not seen: the tree is not walked again in this operation.
    const fs::path late = write("late.jpg", "x");
    const Bytes lateBookmark = *makeBookmark(late);
    fs::rename(late, path("later.jpg"));
    EXPECT_EQ(resolver.resolve(lateBookmark), std::nullopt);
    EXPECT_EQ(resolve(lateBookmark), path("later.jpg"));
}

TEST_F(BookmarkTest, BarePathIsNoRecordButOpensItsFile) {
    const fs::path file = write("trip/a.jpg");
    BookmarkResolver resolver;
    EXPECT_EQ(resolver.resolve(bytesOf(file.string())), std::nullopt);
    EXPECT_EQ(resolver.resolvedFile(bytesOf(file.string())), file);
    EXPECT_EQ(resolver.resolvedFile(bytesOf(path("none.jpg").string())), std::nullopt);
    EXPECT_EQ(resolver.resolvedFile(*makeBookmark(file)), file);
}

TEST_F(BookmarkTest, RefusesBytesThatAreNoRecord) {
    BookmarkResolver resolver;
    const Bytes good = *makeBookmark(write("a.jpg"));
    EXPECT_EQ(resolver.resolvedFile({}), std::nullopt);
    EXPECT_EQ(resolver.resolvedFile({0xFF}), std::nullopt);
    EXPECT_EQ(resolver.resolvedFile({0xC3, 0x28}), std::nullopt);
    EXPECT_EQ(resolver.resolvedFile(bytesOf(std::string_view{"/tmp\0x", 6})), std::nullopt);
    Bytes unknownVersion = good;
    unknownVersion[1] = 2;
    EXPECT_EQ(resolver.resolve(unknownVersion), std::nullopt);
    Bytes longer = good;
    longer.push_back('x');
    EXPECT_EQ(resolver.resolve(longer), std::nullopt);
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_EQ(resolver.resolve({good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)}),
                  std::nullopt);
}

TEST_F(BookmarkTest, SurvivesMutatedRecords) {
    const Bytes good = *makeBookmark(write("trip/a.jpg"));
    std::mt19937 random{20'231'114};
    BookmarkResolver resolver;
    for (int round = 0; round < 5'000; ++round) {
        Bytes bytes = good;
        const std::size_t edits = 1 + random() % 6;
        for (std::size_t i = 0; i < edits && !bytes.empty(); ++i) {
            const std::size_t position = random() % bytes.size();
            switch (random() % 3) {
            case 0:
                bytes[position] = static_cast<std::uint8_t>(random());
                break;
            case 1:
                bytes.resize(position);
                break;
            default:
                bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(position),
                             static_cast<std::uint8_t>(random()));
            }
        }
        const std::optional<fs::path> found = resolver.resolvedFile(bytes);
        if (found) {
            EXPECT_TRUE(fs::exists(fs::symlink_status(*found)));
        }
    }
}

} // namespace
} // namespace Foundation
