// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/Bytes.h>
#include <Foundation/Cancellation.h>
#include <PhotoSources/FolderImporter.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <thread>

namespace PhotoSources {
namespace {

namespace fs = std::filesystem;
using ProjectModel::FilePhotoRef;
using ProjectModel::PhotoItem;
using Names = std::vector<std::string>;

class FolderImporterTest : public testing::Test {
protected:
    fs::path write(std::string_view name) const { return m_folder.write(name, SampleFiles::jpeg()); }
    fs::path write(std::string_view name, std::string_view contents) const {
        return m_folder.write(name, SampleFiles::bytesOf(contents));
    }

    [[nodiscard]] std::vector<PhotoItem> import() const {
        return FolderImporter::importPhotos(m_folder.path());
    }

    /// The imported files' paths, relative to the folder.
    [[nodiscard]] Names imported() const { return pathsOf(import()); }

    [[nodiscard]] Names pathsOf(const std::vector<PhotoItem>& photos) const {
        Foundation::BookmarkResolver resolver;
        Names names;
        for (const PhotoItem& photo : photos)
            names.push_back(resolver.resolve(std::get<FilePhotoRef>(photo.source).bookmark)
                                ->lexically_relative(m_folder.path())
                                .string());
        return names;
    }

    TemporaryFolder m_folder;
};

// The records

TEST_F(FolderImporterTest, EveryPhotoStartsSelectedAsProposed) {
    write("a.jpg");
    write("b.jpg");
    for (const PhotoItem& photo : import()) {
        EXPECT_TRUE(photo.isSelected);
        EXPECT_EQ(photo.selectionProvenance, ProjectModel::Provenance::proposed);
        EXPECT_FALSE(photo.isMissing);
        EXPECT_FALSE(photo.sourceID || photo.clusterID || photo.location || photo.qualityScore ||
                     photo.caption || photo.captionProvenance);
    }
}

TEST_F(FolderImporterTest, PhotosCarryTheirMetadataNameAndBookmark) {
    const fs::path file =
        m_folder.write("Rome/IMG 1.JPG", SampleFiles::jpeg(SampleFiles::Exif{}
                                                               .dateTimeOriginal("2023:07:14 18:22:05")
                                                               .offsetTimeOriginal("+02:00")
                                                               .latitude({{41, 1}, {54, 1}, {0, 1}}, "N")
                                                               .longitude({{12, 1}, {30, 1}, {0, 1}}, "E")));
    const std::vector<PhotoItem> photos = import();
    ASSERT_EQ(photos.size(), 1U);
    EXPECT_EQ(photos[0].captureDate, Foundation::parseIso8601("2023-07-14T16:22:05Z"));
    ASSERT_TRUE(photos[0].coordinate);
    EXPECT_DOUBLE_EQ(photos[0].coordinate->latitude, 41.9);
    EXPECT_DOUBLE_EQ(photos[0].coordinate->longitude, 12.5);
    const auto& reference = std::get<FilePhotoRef>(photos[0].source);
    EXPECT_EQ(reference.displayName, "IMG 1.JPG");
    EXPECT_EQ(Foundation::BookmarkResolver{}.resolve(reference.bookmark), file);
}

TEST_F(FolderImporterTest, ImportingTwiceGivesOtherIdsAndEqualIdentityKeys) {
    write("a.jpg");
    write("sub/b.jpg");
    const std::vector<PhotoItem> first = import();
    const std::vector<PhotoItem> second = FolderImporter::importPhotos(m_folder.path() / "sub" / ".." / "");
    ASSERT_EQ(first.size(), 2U);
    ASSERT_EQ(second.size(), 2U);
    Foundation::BookmarkResolver resolver;
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_NE(first[i].id, second[i].id);
        EXPECT_EQ(ProjectModel::identityKey(first[i].source, resolver),
                  ProjectModel::identityKey(second[i].source, resolver));
    }
}

TEST_F(FolderImporterTest, IdsAreTakenFromTheGivenSourceInTheOrderOfTheResult) {
    for (int i = 0; i < 50; ++i)
        write("photo " + std::to_string(100 + i) + ".jpg");
    FolderImporter::Options options;
    std::uint8_t next = 0;
    options.newID = [&next] {
        Foundation::Uuid id;
        id.bytes[0] = ++next;
        return id;
    };
    const std::vector<PhotoItem> photos = FolderImporter::importPhotos(m_folder.path(), options);
    ASSERT_EQ(photos.size(), 50U);
    for (std::size_t i = 0; i < photos.size(); ++i) {
        EXPECT_EQ(photos[i].id.bytes[0], i + 1);
        EXPECT_EQ(std::get<FilePhotoRef>(photos[i].source).displayName,
                  "photo " + std::to_string(100 + i) + ".jpg");
    }
}

TEST_F(FolderImporterTest, NamesThatAreNotUtf8AreShownWithReplacements) {
    write("caf\xE9 \xC3\xA9.jpg");
    const std::vector<PhotoItem> photos = import();
    ASSERT_EQ(photos.size(), 1U);
    const auto& reference = std::get<FilePhotoRef>(photos[0].source);
    EXPECT_EQ(reference.displayName, "caf\xEF\xBF\xBD \xC3\xA9.jpg");
    EXPECT_EQ(Foundation::BookmarkResolver{}.resolve(reference.bookmark),
              m_folder.path() / "caf\xE9 \xC3\xA9.jpg");
}

// The walk

TEST_F(FolderImporterTest, FolderOfHiddenImagesYieldsNothing) {
    write(".a.jpg");
    write(".hidden/b.jpg");
    write("visible/.c.jpg");
    EXPECT_EQ(imported(), Names{});
}

TEST_F(FolderImporterTest, NestedFoldersAreImportedAndPackagesAreNot) {
    write("a/b/c/deep.jpg");
    write("Photos.photoslibrary/originals/x.jpg");
    write("Old.aplibrary/x.jpg");
    write("Tool.app/x.jpg");
    write("Some.BUNDLE/x.jpg");
    write("Text.rtfd/x.jpg");
    write("sub/Shared.PhotosLibrary/x.jpg");
    write("app/kept.jpg");
    write("v1.2/kept.jpg");
    EXPECT_EQ(imported(), (Names{"a/b/c/deep.jpg", "app/kept.jpg", "v1.2/kept.jpg"}));
}

TEST_F(FolderImporterTest, GivenFolderIsEnteredWhateverItsName) {
    write(".hidden/a.jpg");
    write("My.photoslibrary/b.jpg");
    EXPECT_EQ(FolderImporter::importPhotos(m_folder.path() / ".hidden").size(), 1U);
    EXPECT_EQ(FolderImporter::importPhotos(m_folder.path() / "My.photoslibrary").size(), 1U);
}

TEST_F(FolderImporterTest, OrderIsThatOfThePathsFolderByFolder) {
    for (const char* name :
         {"b.jpg", "a/z.jpg", "a-1.jpg", "B.jpg", "a/a/1.jpg", "a.jpg", "\xC3\xA4.jpg", "10.jpg", "9.jpg"})
        write(name);
    EXPECT_EQ(imported(), (Names{"10.jpg", "9.jpg", "B.jpg", "a/a/1.jpg", "a/z.jpg", "a-1.jpg", "a.jpg",
                                 "b.jpg", "\xC3\xA4.jpg"}));
}

TEST_F(FolderImporterTest, LinksToFoldersAreNotFollowed) {
    write("real/a.jpg");
    fs::create_directory_symlink(m_folder.path() / "real", m_folder.path() / "link");
    fs::create_directory_symlink(m_folder.path(), m_folder.path() / "real" / "loop");
    EXPECT_EQ(imported(), Names{"real/a.jpg"});
}

TEST_F(FolderImporterTest, LinksToImagesAreNoPhotosWhereverTheyLead) {
    const fs::path original = write("original.jpg");
    const TemporaryFolder elsewhere;
    fs::create_symlink(original, m_folder.path() / "best.jpg");
    fs::create_symlink(elsewhere.write("other.jpg", SampleFiles::jpeg()), m_folder.path() / "other.jpg");
    fs::create_symlink(elsewhere.path() / "gone.jpg", m_folder.path() / "dangling.jpg");
    fs::create_symlink("itself.jpg", m_folder.path() / "itself.jpg");
    EXPECT_EQ(imported(), Names{"original.jpg"});
}

TEST_F(FolderImporterTest, SecondNameOfTheSameFileIsAPhotoLikeTheFirst) {
    const fs::path original = write("a.jpg");
    fs::create_hard_link(original, m_folder.path() / "b.jpg");
    EXPECT_EQ(imported(), (Names{"a.jpg", "b.jpg"}));
}

TEST_F(FolderImporterTest, LinkToTheFolderItselfIsFollowed) {
    write("a.jpg");
    const TemporaryFolder elsewhere;
    fs::create_directory_symlink(m_folder.path(), elsewhere.path() / "photos");
    EXPECT_EQ(FolderImporter::importPhotos(elsewhere.path() / "photos").size(), 1U);
}

TEST_F(FolderImporterTest, WhatIsNoFolderYieldsNothing) {
    const fs::path file = write("a.jpg");
    EXPECT_TRUE(FolderImporter::importPhotos(file).empty());
    EXPECT_TRUE(FolderImporter::importPhotos(m_folder.path() / "none").empty());
    EXPECT_TRUE(FolderImporter::importPhotos("").empty());
}

TEST_F(FolderImporterTest, UnreadableFoldersAndFilesArePassedOver) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read everything";
    write("a.jpg");
    const fs::path folder = write("closed/b.jpg").parent_path();
    const fs::path file = write("c.jpg");
    fs::permissions(folder, fs::perms::none);
    fs::permissions(file, fs::perms::none);
    EXPECT_EQ(imported(), Names{"a.jpg"});
    fs::permissions(folder, fs::perms::owner_all);
}

TEST_F(FolderImporterTest, PipesAndFoldersWithImageNamesAreNoPhotos) {
    ASSERT_EQ(::mkfifo((m_folder.path() / "pipe.jpg").c_str(), 0600), 0);
    fs::create_directory(m_folder.path() / "folder.jpg");
    fs::create_symlink("/dev/zero", m_folder.path() / "zero.jpg");
    write("folder.jpg/inside.jpg");
    EXPECT_EQ(imported(), Names{"folder.jpg/inside.jpg"});
}

// What an image is

TEST_F(FolderImporterTest, ImageExtensionOnOtherContentsIsNoImage) {
    write("document.jpg", "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n");
    write("page.png", "<!DOCTYPE html><html><body>hello</body></html>");
    write("notes.jpeg", "Just a few lines\nof text.\n");
    write("archive.heic", std::string_view{"PK\3\4\x14\0\0\0\0\0", 10});
    write("film.jpg", std::string_view{"\0\0\0\x18"
                                       "ftypisom\0\0\2\0isomiso2avc1mp41",
                                       28});
    write("empty.jpg", "");
    EXPECT_EQ(imported(), Names{});
}

TEST_F(FolderImporterTest, ImageIsRecognisedByItsContentsWhateverItsName) {
    write("without extension");
    write("wrong.txt");
    m_folder.write("wrong.jpg", SampleFiles::png());
    m_folder.write("right.heic", SampleFiles::heif(SampleFiles::tiff({})));
    m_folder.write("right.jxl", SampleFiles::jpegXl({}));
    EXPECT_EQ(imported(), (Names{"right.heic", "right.jxl", "without extension", "wrong.jpg", "wrong.txt"}));
}

TEST_F(FolderImporterTest, UnknownContentsAreAnImageByTheirName) {
    write("damaged.jpg", std::string_view{"\0\1\2\3\xFE\xFD\0\0\0\0\7", 11});
    write("camera.x3f", std::string_view{"FOVb\0\0\3\0\xFF\xFE\0\0", 12});
    write("data.bin", std::string_view{"\0\1\2\3\xFE\xFD\0\0\0\0\7", 11});
    write("data", std::string_view{"\0\1\2\3\xFE\xFD\0\0\0\0\7", 11});
    EXPECT_EQ(imported(), (Names{"camera.x3f", "damaged.jpg"}));
}

TEST_F(FolderImporterTest, WhateverTheSystemCountsAmongTheImagesIsTaken) {
    write("drawing.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'/>");
    write("icon.ico", std::string_view{"\0\0\1\0\1\0\x10\x10\0\0\1\0\4\0\0\0", 16});
    m_folder.write("raw.NEF", SampleFiles::tiff({}));
    EXPECT_EQ(imported(), (Names{"drawing.svg", "icon.ico", "raw.NEF"}));
}

TEST_F(FolderImporterTest, TwoBytesThatTargaSharesWithOtherDataMakeNoImage) {
    const std::string_view bytes{"\0\1\1\0\0\0\0\xFE\xFD\0\0\0\0\0\0\0\0\0\0\0", 20};
    write("table.dat", bytes);
    write("picture.tga", bytes);
    EXPECT_EQ(imported(), Names{"picture.tga"});
}

TEST_F(FolderImporterTest, FilmsAndSidecarsBesidePhotosAreLeftOut) {
    write("IMG_1.jpg");
    write("IMG_1.MOV", std::string_view{"\0\0\0\x14"
                                        "ftypqt  \0\0\0\0qt  \0\0\0\x08wide",
                                        28});
    write("IMG_1.xmp", "<?xpacket begin=''?><x:xmpmeta xmlns:x='adobe:ns:meta/'/>");
    write("Thumbs.db", std::string_view{"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1\0\0\0\0", 12});
    EXPECT_EQ(imported(), Names{"IMG_1.jpg"});
}

TEST_F(FolderImporterTest, BrokenImagesAreImportedLikeOthers) {
    SampleFiles::Bytes cut = SampleFiles::jpeg();
    cut.resize(20);
    m_folder.write("cut.jpg", cut);
    m_folder.write("cut.png", SampleFiles::bytesOf("\x89PNG\r\n\x1A\n"));
    EXPECT_EQ(imported(), (Names{"cut.jpg", "cut.png"}));
}

// Progress and interruption

TEST_F(FolderImporterTest, ProgressRisesToTheNumberOfPhotosOnTheCallingThread) {
    for (int i = 0; i < 200; ++i)
        write(std::to_string(i) + ".jpg");
    for (int i = 0; i < 20; ++i)
        write("note " + std::to_string(i) + ".txt", "no image");
    std::vector<ImportProgress> reports;
    FolderImporter::Options options;
    const std::thread::id caller = std::this_thread::get_id();
    options.progress = [&](const ImportProgress& progress) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        reports.push_back(progress);
    };
    EXPECT_EQ(FolderImporter::importPhotos(m_folder.path(), options).size(), 200U);
    ASSERT_GE(reports.size(), 2U);
    EXPECT_EQ(reports.front().completed, 0U);
    EXPECT_EQ(reports.back(), (ImportProgress{200, 200}));
    for (std::size_t i = 1; i < reports.size(); ++i) {
        EXPECT_GE(reports[i].completed, reports[i - 1].completed);
        EXPECT_LE(reports[i].completed, reports[i].total);
    }
}

TEST_F(FolderImporterTest, StopsWhenAsked) {
    for (int i = 0; i < 300; ++i)
        write(std::to_string(i) + ".jpg");
    std::stop_source source;
    FolderImporter::Options options;
    options.stop = source.get_token();
    options.progress = [&](const ImportProgress&) { source.request_stop(); };
    EXPECT_THROW(static_cast<void>(FolderImporter::importPhotos(m_folder.path(), options)),
                 Foundation::Cancelled);
    EXPECT_THROW(static_cast<void>(FolderImporter::importPhotos(m_folder.path(), options)),
                 Foundation::Cancelled);
}

TEST_F(FolderImporterTest, ExceptionOfTheProgressReceiverComesThrough) {
    for (int i = 0; i < 100; ++i)
        write(std::to_string(i) + ".jpg");
    FolderImporter::Options options;
    options.progress = [](const ImportProgress& progress) {
        if (progress.completed > 0)
            throw std::runtime_error("receiver");
    };
    EXPECT_THROW(static_cast<void>(FolderImporter::importPhotos(m_folder.path(), options)),
                 std::runtime_error);
}

TEST_F(FolderImporterTest, ThousandFilesComeOutTheSameEveryTime) {
    for (int i = 0; i < 1'000; ++i)
        m_folder.write(
            std::to_string(i % 7) + "/" + std::to_string(i) + ".jpg",
            SampleFiles::jpeg(SampleFiles::Exif{}
                                  .dateTimeOriginal("2023:07:14 18:22:" + std::to_string(10 + i % 50))
                                  .offsetTimeOriginal("+02:00")));
    const std::vector<PhotoItem> first = import();
    std::vector<PhotoItem> second = import();
    ASSERT_EQ(first.size(), 1'000U);
    ASSERT_EQ(second.size(), 1'000U);
    for (std::size_t i = 0; i < first.size(); ++i)
        second[i].id = first[i].id;
    EXPECT_EQ(first, second);
}

} // namespace
} // namespace PhotoSources
