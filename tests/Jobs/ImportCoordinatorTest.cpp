// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/Bookmark.h>
#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Jobs/ImportCoordinator.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <latch>
#include <memory>
#include <vector>

using Document::ProjectDocument;
using Jobs::ImportCoordinator;
using Jobs::ImportOutcome;
using ProjectModel::FolderSourceRef;
using ProjectModel::PhotoItem;
using ProjectModel::Project;

namespace {

class ImportCoordinatorTest : public testing::Test {
protected:
    ImportOutcome import(const std::vector<std::filesystem::path>& folders) {
        ImportCoordinator coordinator{queue.executor(), environment()};
        coordinator.importFolders(m_document, folders);
        runUntilIdle(coordinator);
        return coordinator.state().outcome;
    }
    void runUntilIdle(const ImportCoordinator& coordinator) {
        queue.runUntil([&] { return !coordinator.state().isRunning; });
    }
    /// The folders on this disk.
    static Jobs::ImportEnvironment environment() {
        return {
            .newID = Foundation::Uuid::random,
            .bookmarkOfFolder =
                [](const std::filesystem::path& folder) {
                    return std::filesystem::is_directory(folder) ? Foundation::makeBookmark(folder)
                                                                 : std::nullopt;
                },
            .photosInFolder = PhotoSources::FolderImporter::importPhotos,
            .identityKeys =
                [resolver = std::make_shared<Foundation::BookmarkResolver>()](
                    std::span<const PhotoItem> photos, const std::stop_token&) {
                    return ProjectModel::identityKeys(photos, *resolver);
                },
        };
    }
    const Project& project() const { return m_document.project(); }
    std::filesystem::path emptyFolder(std::string_view name) {
        std::filesystem::create_directories(m_folder / name);
        return m_folder / name;
    }
    std::filesystem::path folderOfPhotos(const std::string& name, int count) {
        for (int number = 0; number < count; ++number)
            TestPhotos::write(m_folder / (name + "/" + std::to_string(number) + ".jpg"));
        return m_folder / name;
    }

    Jobs::ActionQueue queue;
    TemporaryFolder m_folder;
    ProjectDocument m_document;
};

class WorkingFolder {
public:
    explicit WorkingFolder(const std::filesystem::path& folder) { std::filesystem::current_path(folder); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() { std::filesystem::current_path(m_before); }

private:
    std::filesystem::path m_before = std::filesystem::current_path();
};

} // namespace

TEST_F(ImportCoordinatorTest, OfTwoFoldersTheFirstWithoutImagesGivesTheNoticeAndTheSecondIsImported) {
    const ImportOutcome outcome = import({emptyFolder("empty"), folderOfPhotos("trip", 2)});
    EXPECT_EQ(outcome.notices, std::vector<std::string>{"No photos were found in “empty”."});
    EXPECT_EQ(outcome.added, 2U);
    EXPECT_EQ(project().photos.size(), 2U);
    ASSERT_EQ(project().sources.size(), 1U);
    EXPECT_EQ(std::get<FolderSourceRef>(project().sources[0].ref).displayPath, (m_folder / "trip").string());
}

TEST_F(ImportCoordinatorTest, TwoBadFoldersGiveBothNoticesOnePerLine) {
    const ImportOutcome outcome = import({m_folder / "gone", emptyFolder("empty")});
    EXPECT_EQ(outcome.notice(), "Couldn’t get lasting access to “gone”.\nNo photos were found in “empty”.");
    EXPECT_EQ(outcome.added, 0U);
    EXPECT_EQ(project(), Project::empty());
}

TEST_F(ImportCoordinatorTest, WithoutNoticesThereIsNoNoticeText) {
    EXPECT_EQ(import({folderOfPhotos("trip", 1)}).notice(), std::nullopt);
}

TEST_F(ImportCoordinatorTest, ImportingTheSameFolderTwiceAddsNothingTheSecondTimeAndGivesNoNotice) {
    const std::filesystem::path folder = folderOfPhotos("trip", 3);
    import({folder});
    const Project before = project();
    EXPECT_EQ(import({folder}), ImportOutcome{});
    EXPECT_EQ(project(), before);
}

TEST_F(ImportCoordinatorTest, TheSameFolderNamedTwiceInOneImportAddsOneSource) {
    const std::filesystem::path folder = folderOfPhotos("trip", 2);
    EXPECT_EQ(import({folder, folder / "."}).added, 2U);
    EXPECT_EQ(project().sources.size(), 1U);
}

TEST_F(ImportCoordinatorTest, PhotosCarryTheirSourceSoThatRemovingItRemovesExactlyThem) {
    import({folderOfPhotos("first", 2)});
    import({folderOfPhotos("second", 3)});
    ASSERT_EQ(project().sources.size(), 2U);
    const std::vector<PhotoItem> all = project().photos;
    m_document.edit("Remove Source", [](Project& project) { project.removeSource(project.sources[1].id); });
    EXPECT_EQ(project().photos.size(), 2U);
    for (const PhotoItem& photo : project().photos)
        EXPECT_EQ(photo.sourceID, project().sources[0].id);
}

TEST_F(ImportCoordinatorTest, PhotosKnownAlreadyStayLinkedToTheSourceTheyFirstCameThrough) {
    import({folderOfPhotos("trip/day1", 2)});
    const Foundation::Uuid first = project().sources[0].id;
    folderOfPhotos("trip/day2", 1);
    EXPECT_EQ(import({m_folder / "trip"}).added, 1U);
    ASSERT_EQ(project().sources.size(), 2U);
    int ofFirst = 0;
    for (const PhotoItem& photo : project().photos)
        ofFirst += photo.sourceID == first ? 1 : 0;
    EXPECT_EQ(ofFirst, 2);
}

TEST_F(ImportCoordinatorTest, NewPhotosAreSortedInByTheirDate) {
    TestPhotos::write(m_folder / "a/late.jpg", {.date = "2024:05:02 10:00:00"});
    TestPhotos::write(m_folder / "b/early.jpg", {.date = "2024:05:01 10:00:00"});
    import({m_folder / "a", m_folder / "b"});
    ASSERT_EQ(project().photos.size(), 2U);
    EXPECT_EQ(std::get<ProjectModel::FilePhotoRef>(project().photos[0].source).displayName, "early.jpg");
    EXPECT_EQ(project().photos[0].captureDate, Foundation::makeInstant(2024, 5, 1, 10, 0, 0));
}

TEST_F(ImportCoordinatorTest, AFileInPlaceOfAFolderGetsNoLastingAccess) {
    TestPhotos::write(m_folder / "photo.jpg");
    EXPECT_EQ(import({m_folder / "photo.jpg"}).notices,
              std::vector<std::string>{"Couldn’t get lasting access to “photo.jpg”."});
}

TEST_F(ImportCoordinatorTest, NoticesNameTheLastComponentOfTheFullPath) {
    emptyFolder("Lisbon 2024/inner");
    const WorkingFolder working{m_folder / "Lisbon 2024"};
    EXPECT_EQ(ImportCoordinator::folderName("."), "Lisbon 2024");
    EXPECT_EQ(ImportCoordinator::folderName("inner/"), "inner");
    EXPECT_EQ(ImportCoordinator::folderName("inner/.."), "Lisbon 2024");
    EXPECT_EQ(ImportCoordinator::folderName("/"), "/");
    EXPECT_EQ(import({"."}).notices, std::vector<std::string>{"No photos were found in “Lisbon 2024”."});
}

TEST_F(ImportCoordinatorTest, TheShownPathIsFullAndPlain) {
    folderOfPhotos("trip", 1);
    const WorkingFolder working{m_folder.path()};
    import({"./trip/../trip/"});
    ASSERT_EQ(project().sources.size(), 1U);
    EXPECT_EQ(std::get<FolderSourceRef>(project().sources[0].ref).displayPath, (m_folder / "trip").string());
}

TEST_F(ImportCoordinatorTest, AFolderWhoseNameIsNotUtf8IsImportedUnderAReadableOne) {
    const std::filesystem::path folder = m_folder.path() / "caf\xE9";
    TestPhotos::write(folder / "1.jpg");
    EXPECT_EQ(import({folder}).added, 1U);
    EXPECT_EQ(std::get<FolderSourceRef>(project().sources[0].ref).displayPath,
              (m_folder.path() / "caf\uFFFD").string());
}

TEST_F(ImportCoordinatorTest, ProgressNamesTheFolderAndReachesItsTotal) {
    ImportCoordinator* watched = nullptr;
    std::optional<std::string> named;
    PhotoSources::ImportProgress last;
    ImportCoordinator coordinator{queue.executor(), environment(), [&] {
                                      if (const auto& state = watched->state();
                                          state.progress && state.isRunning) {
                                          named = state.progressText;
                                          last = *state.progress;
                                      }
                                  }};
    watched = &coordinator;
    coordinator.importFolders(m_document, {folderOfPhotos("trip", 3)});
    runUntilIdle(coordinator);
    EXPECT_EQ(named, "Importing trip");
    EXPECT_EQ(last, (PhotoSources::ImportProgress{3, 3}));
    EXPECT_FALSE(coordinator.state().progressText);
}

TEST_F(ImportCoordinatorTest, CancelledItKeepsTheFoldersBeforeTheInterruptedOne) {
    ImportCoordinator* running = nullptr;
    Jobs::ImportEnvironment slow = environment();
    std::latch second{1};
    slow.photosInFolder = [&,
                           read = slow.photosInFolder](const std::filesystem::path& folder,
                                                       const PhotoSources::FolderImporter::Options& options) {
        if (folder.filename() == "second") {
            std::latch stopped{1};
            const std::stop_callback wake{options.stop, [&] { stopped.count_down(); }};
            second.count_down();
            stopped.wait();
        }
        return read(folder, options);
    };
    ImportCoordinator coordinator{queue.executor(), slow};
    running = &coordinator;
    coordinator.importFolders(m_document, {folderOfPhotos("first", 2), folderOfPhotos("second", 3)});
    second.wait();
    running->cancel();
    EXPECT_TRUE(coordinator.state().isStopping);
    runUntilIdle(coordinator);
    EXPECT_TRUE(coordinator.state().wasCancelled);
    EXPECT_EQ(coordinator.state().outcome.added, 2U);
    EXPECT_EQ(project().photos.size(), 2U);
    EXPECT_EQ(project().sources.size(), 1U);
}

TEST_F(ImportCoordinatorTest, WhatTheUserDoesMeanwhileStays) {
    const std::filesystem::path trip = folderOfPhotos("trip", 3);
    import({trip});
    const std::vector<PhotoItem> known = project().photos;
    m_document.edit("Remove", [&](Project& project) { project.removePhotos({known[0].id}); });
    ImportCoordinator coordinator{queue.executor(), environment()};
    coordinator.importFolders(m_document, {trip});
    // While the folder is read the removal is taken back.
    m_document.edit("Undo", [&](Project& project) { project.photos = known; });
    runUntilIdle(coordinator);
    EXPECT_EQ(coordinator.state().outcome.added, 0U);
    EXPECT_EQ(project().photos, known);
}

TEST_F(ImportCoordinatorTest, SeveralFoldersAreOneStep) {
    int changes = 0;
    const auto listening = m_document.addListener([&](const Document::ProjectDifference&) { ++changes; });
    import({folderOfPhotos("first", 1), folderOfPhotos("second", 1)});
    EXPECT_EQ(changes, 1);
}
