// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/BookmarkedFile.h>
#include <Foundation/Cancellation.h>
#include <Roamly/Platform/PhotoFiles.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace PhotoFiles = Platform::PhotoFiles;
using Foundation::Uuid;
using ProjectModel::FilePhotoRef;
using ProjectModel::PhotoItem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

class PhotoFilesTest : public testing::Test {
protected:
    /// Out of the reach of a bookmark's own search.
    fs::path far(const std::string& name) const { return m_elsewhere / name; }

    fs::path write(const fs::path& file, const std::string& content = "photo") const {
        fs::create_directories(file.parent_path());
        std::ofstream{file} << content;
        return file;
    }
    /// A photo of the project by a bookmark made now.
    void add(const fs::path& file, const std::string& content = "photo") {
        write(file, content);
        PhotoItem photo = TestPhotos::item(static_cast<int>(m_photos.size()) + 1, file);
        photo.source = FilePhotoRef{Foundation::makeBookmark(file).value(), file.filename()};
        m_photos.push_back(photo);
    }
    void move(const fs::path& from, const fs::path& to) const {
        fs::create_directories(to.parent_path());
        fs::rename(from, to);
    }
    /// As a copy to another drive is: nothing but names and contents stay.
    void moveToAnotherDrive(const fs::path& from, const fs::path& to) const {
        fs::create_directories(to.parent_path());
        fs::copy(from, to, fs::copy_options::recursive);
        fs::remove_all(from);
    }
    PhotoFiles::Refreshes check() const { return PhotoFiles::check(m_photos, {}); }
    /// Where the photos are, by their numbers from 1.
    std::map<int, fs::path> locate(const fs::path& chosen, std::optional<Uuid> meant = {}) const {
        std::map<int, fs::path> found;
        for (const auto& refresh : PhotoFiles::locate(m_photos, chosen, meant, {})) {
            EXPECT_FALSE(refresh.isMissing);
            const auto& ref = std::get<FilePhotoRef>(refresh.source);
            const auto file = Foundation::readBookmark(ref.bookmark);
            EXPECT_EQ(ref.displayName, file->path.filename());
            for (std::size_t i = 0; i < m_photos.size(); ++i) {
                if (m_photos[i].id != refresh.id)
                    continue;
                EXPECT_EQ(refresh.was, m_photos[i].source);
                found[static_cast<int>(i) + 1] = file->path;
            }
        }
        return found;
    }

    TemporaryFolder m_folder;
    TemporaryFolder m_elsewhere;
    std::vector<PhotoItem> m_photos;
};

TEST_F(PhotoFilesTest, OfPhotosInTheirPlaceThereIsNoNews) {
    add(m_folder / "trip/a.jpg");
    m_photos.push_back(TestPhotos::item(2, write(m_folder / "trip/b.jpg"))); // by its bare path
    m_photos.push_back(TestPhotos::item(3));
    m_photos.back().source = ProjectModel::LibraryPhotoRef{"12"};
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(PhotoFilesTest, AMissingPhotoIsToldOnceAndWhenItIsBack) {
    add(m_folder / "trip/a.jpg");
    add(m_folder / "trip/b.jpg");
    move(m_folder / "trip/a.jpg", far("a.jpg"));
    const auto refreshes = check();
    ASSERT_EQ(refreshes.size(), 1U);
    EXPECT_EQ(refreshes[0].id, m_photos[0].id);
    EXPECT_TRUE(refreshes[0].isMissing);
    EXPECT_EQ(refreshes[0].source, m_photos[0].source);

    m_photos[0].isMissing = true;
    EXPECT_THAT(check(), IsEmpty());
    move(far("a.jpg"), m_folder / "trip/a.jpg");
    ASSERT_EQ(check().size(), 1U);
    EXPECT_FALSE(check()[0].isMissing);
}

TEST_F(PhotoFilesTest, ARenamedOrMovedPhotosBookmarkAndNameAreRefreshed) {
    add(m_folder / "trip/a.jpg");
    add(m_folder / "trip/b.jpg", "another");
    move(m_folder / "trip/a.jpg", m_folder / "trip/renamed.jpg");
    move(m_folder / "trip/b.jpg", m_folder / "trip/best/b.jpg");
    const auto refreshes = check();
    ASSERT_EQ(refreshes.size(), 2U);
    EXPECT_EQ(std::get<FilePhotoRef>(refreshes[0].source).displayName, "renamed.jpg");
    EXPECT_EQ(Foundation::readBookmark(std::get<FilePhotoRef>(refreshes[1].source).bookmark)->path,
              m_folder / "trip/best/b.jpg");
    m_photos[0].source = refreshes[0].source;
    m_photos[1].source = refreshes[1].source;
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(PhotoFilesTest, ALargeProjectsCheckCanBeStopped) {
    add(m_folder / "trip/a.jpg");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW((void)PhotoFiles::check(m_photos, stop.get_token()), Foundation::Cancelled);
    EXPECT_THROW((void)PhotoFiles::locate(m_photos, m_folder.path(), {}, stop.get_token()),
                 Foundation::Cancelled);
}

TEST_F(PhotoFilesTest, AFolderMendsAllThatIsInItAtAnyDepth) {
    add(m_folder / "trip/day1/a.jpg", "one");
    add(m_folder / "trip/day2/b.jpg", "three");
    moveToAnotherDrive(m_folder / "trip", far("backup/Italy"));
    EXPECT_THAT(locate(far("backup")), UnorderedElementsAre(Pair(1, far("backup/Italy/day1/a.jpg")),
                                                            Pair(2, far("backup/Italy/day2/b.jpg"))));
    EXPECT_THAT(locate(far("backup/Italy/")), testing::SizeIs(2));
}

TEST_F(PhotoFilesTest, OneFileMendsAllThatMovedWithIt) {
    add(m_folder / "trip/day1/a.jpg", "one");
    add(m_folder / "trip/day1/b.jpg", "two!");
    add(m_folder / "trip/day2/c.jpg", "three");
    moveToAnotherDrive(m_folder / "trip", far("Italy"));
    EXPECT_THAT(locate(far("Italy/day1/a.jpg")),
                UnorderedElementsAre(Pair(1, far("Italy/day1/a.jpg")), Pair(2, far("Italy/day1/b.jpg")),
                                     Pair(3, far("Italy/day2/c.jpg"))));
}

TEST_F(PhotoFilesTest, TwoFilesOfOneNameAreToldApartByTheirFolders) {
    add(m_folder / "trip/day1/IMG_1.jpg", "same");
    add(m_folder / "trip/day2/IMG_1.jpg", "same");
    moveToAnotherDrive(m_folder / "trip", far("new"));
    EXPECT_THAT(locate(far("new")),
                UnorderedElementsAre(Pair(1, far("new/day1/IMG_1.jpg")), Pair(2, far("new/day2/IMG_1.jpg"))));
}

TEST_F(PhotoFilesTest, WhatCouldBeSeveralFilesStaysMissing) {
    add(m_folder / "trip/IMG_1.jpg", "same");
    write(far("new/x/IMG_1.jpg"), "same");
    write(far("new/y/IMG_1.jpg"), "same");
    fs::remove_all(m_folder / "trip");
    EXPECT_THAT(locate(far("new")), IsEmpty());
}

TEST_F(PhotoFilesTest, AFileThatCouldBeSeveralPhotosStaysNobodys) {
    add(m_folder / "trip/day1/IMG_1.jpg", "same");
    add(m_folder / "trip/day2/IMG_1.jpg", "same");
    fs::remove_all(m_folder / "trip");
    write(far("new/IMG_1.jpg"), "same");
    EXPECT_THAT(locate(far("new")), IsEmpty());
}

TEST_F(PhotoFilesTest, AFileThatIsAnotherPhotoAlreadyIsNotTaken) {
    add(m_folder / "trip/IMG_1.jpg", "same");
    add(far("here/IMG_1.jpg"), "same");
    fs::remove_all(m_folder / "trip");
    EXPECT_THAT(locate(far("here")), IsEmpty());
}

TEST_F(PhotoFilesTest, ARenamedFileIsKnownByItsInode) {
    add(m_folder / "trip/a.jpg", "one");
    move(m_folder / "trip/a.jpg", far("new/Sunset.jpg"));
    EXPECT_THAT(locate(far("new")), ElementsAre(Pair(1, far("new/Sunset.jpg"))));
}

TEST_F(PhotoFilesTest, AnotherPhotoOfTheSameNameIsNotTaken) {
    add(m_folder / "trip/IMG_1.jpg", "one");
    fs::remove_all(m_folder / "trip");
    write(far("other/IMG_1.jpg"), "of another camera");
    EXPECT_THAT(locate(far("other")), IsEmpty());
}

TEST_F(PhotoFilesTest, AFileThatWasChangedSinceIsKnownByItsFolder) {
    add(m_folder / "trip/day1/a.jpg", "one");
    fs::remove_all(m_folder / "trip");
    write(far("new/day1/a.jpg"), "one, with tags");
    EXPECT_THAT(locate(far("new")), ElementsAre(Pair(1, far("new/day1/a.jpg"))));
}

TEST_F(PhotoFilesTest, TheFileMeantForAPhotoIsTakenWhateverItsName) {
    add(m_folder / "trip/a.jpg", "one");
    add(m_folder / "trip/b.jpg", "two!");
    fs::remove_all(m_folder / "trip");
    write(far("new/Sunset, edited.jpg"), "much longer");
    write(far("new/b.jpg"), "two!");
    EXPECT_THAT(locate(far("new/Sunset, edited.jpg"), m_photos[0].id),
                UnorderedElementsAre(Pair(1, far("new/Sunset, edited.jpg")), Pair(2, far("new/b.jpg"))));
}

TEST_F(PhotoFilesTest, PhotosInTheirPlaceAreLeftAlone) {
    add(m_folder / "trip/a.jpg", "one");
    write(far("copy/trip/a.jpg"), "one");
    EXPECT_THAT(locate(far("copy")), IsEmpty());
}

TEST_F(PhotoFilesTest, ChoosingWhatIsNotThereFindsNothing) {
    add(m_folder / "trip/a.jpg", "one");
    fs::remove_all(m_folder / "trip");
    EXPECT_THAT(locate(far("none")), IsEmpty());
}

} // namespace
