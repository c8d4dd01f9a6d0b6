// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/Cancellation.h>
#include <Roamly/Document/DocumentSession.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <memory>

using Document::DocumentSession;
using Document::LockWait;
using Document::ProjectDocument;
using Document::ProjectLock;
using Document::ProjectStoreError;
using Document::SaveConflict;
using ProjectModel::Project;
using TestPhotos::item;
using TestPhotos::uuid;
namespace ProjectStore = Document::ProjectStore;

namespace {

/// A project file of three photos.
class DocumentSessionTest : public testing::Test {
protected:
    DocumentSessionTest() {
        Project project;
        for (int number = 1; number <= 3; ++number)
            project.photos.push_back(item(number));
        ProjectStore::save(file, project);
    }

    static void caption(DocumentSession& session, const std::string& text, int number = 1) {
        session.document().edit("Edit Caption",
                                [&](Project& project) { project.userSetCaption(text, uuid(number)); });
    }

    [[nodiscard]] Project stored() const { return ProjectStore::load(file).project; }

    /// Whether nobody holds the lock.
    [[nodiscard]] bool isFree() const {
        bool waited = false;
        std::stop_source stop;
        try {
            const ProjectLock lock{file, {.stop = stop.get_token(), .waiting = [&] {
                                              waited = true;
                                              stop.request_stop();
                                          }}};
        } catch (const Foundation::Cancelled&) {
        }
        return !waited;
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "p.roamly";
};

} // namespace

TEST_F(DocumentSessionTest, AnOpenedDocumentIsTheFilesAndUnmodified) {
    DocumentSession session{file};
    EXPECT_EQ(session.project(), stored());
    EXPECT_EQ(session.path(), file);
    EXPECT_FALSE(session.document().isModified());
    EXPECT_FALSE(session.isChangedOnDisk());
    EXPECT_TRUE(isFree());
}

TEST_F(DocumentSessionTest, WhatCannotBeOpenedIsTold) {
    EXPECT_THROW((DocumentSession{folder / "missing.roamly"}), ProjectStoreError);
}

TEST_F(DocumentSessionTest, SavingWritesOnceAndNothingWhenThereIsNothingToWrite) {
    DocumentSession session{file};
    const auto version = ProjectStore::versionOf(file);
    EXPECT_FALSE(session.save());
    EXPECT_EQ(ProjectStore::versionOf(file), version);
    caption(session, "x");
    EXPECT_TRUE(session.save());
    EXPECT_EQ(stored(), session.project());
    EXPECT_FALSE(session.document().isModified());
    EXPECT_FALSE(session.isChangedOnDisk());
    EXPECT_FALSE(session.save());
    session.document().undo();
    EXPECT_TRUE(session.save());
    EXPECT_EQ(stored().photos[0].caption, std::nullopt);
}

TEST_F(DocumentSessionTest, ARefreshIsWrittenWhenSaving) {
    DocumentSession session{file};
    const ProjectModel::PhotoRef renewed = ProjectModel::FilePhotoRef{{7}, "7"};
    session.document().refresh({{uuid(2), session.project().photos[1].source, renewed, true}});
    EXPECT_TRUE(session.save());
    EXPECT_EQ(stored().photos[1].source, renewed);
}

TEST_F(DocumentSessionTest, AnothersChangeIsNotOverwrittenUnlessTold) {
    DocumentSession mine{file};
    DocumentSession theirs{file};
    caption(theirs, "theirs");
    theirs.save();
    EXPECT_TRUE(mine.isChangedOnDisk());
    caption(mine, "mine", 2);
    try {
        mine.save();
        ADD_FAILURE() << "it was overwritten";
    } catch (const SaveConflict& conflict) {
        EXPECT_EQ(std::string{conflict.what()},
                  "The project “" + file.string() +
                      "” was changed by another program meanwhile, so nothing was saved.");
    }
    EXPECT_EQ(stored(), theirs.project());
    EXPECT_TRUE(mine.document().isModified());

    EXPECT_TRUE(mine.save({}, DocumentSession::AnothersChange::Overwrite));
    EXPECT_EQ(stored(), mine.project());
    EXPECT_FALSE(mine.isChangedOnDisk());
    EXPECT_TRUE(theirs.isChangedOnDisk());
}

TEST_F(DocumentSessionTest, SavingMergedKeepsBothChangesAsOneStep) {
    DocumentSession mine{file};
    mine.document().edit("Generate Captions", [](Project& project) {
        project.applyGeneratedCaptions({{uuid(1), "one"}, {uuid(2), "two"}, {uuid(3), "three"}});
    });
    DocumentSession theirs{file};
    theirs.document().edit("Deselect", [](Project& project) { project.userSetSelection(false, uuid(1)); });
    caption(theirs, "typed", 2);
    theirs.save();

    EXPECT_TRUE(mine.saveMerged());
    const Project result = stored();
    EXPECT_EQ(result, mine.project());
    EXPECT_EQ(result.photos[0].caption, "one");
    EXPECT_FALSE(result.photos[0].isSelected);
    EXPECT_EQ(result.photos[1].caption, "typed");
    EXPECT_EQ(result.photos[2].caption, "three");
    EXPECT_FALSE(mine.document().isModified());
    EXPECT_EQ(mine.document().undoName(), "Merge Changes");
    mine.document().undo();
    EXPECT_EQ(mine.project().photos[1].caption, "two");
}

TEST_F(DocumentSessionTest, SavingMergedKeepsWhatWasRefreshed) {
    DocumentSession mine{file};
    const ProjectModel::PhotoRef renewed = ProjectModel::FilePhotoRef{{7}, "7"};
    mine.document().refresh({{uuid(2), mine.project().photos[1].source, renewed, false}});
    DocumentSession theirs{file};
    caption(theirs, "typed", 2);
    theirs.save();
    EXPECT_TRUE(mine.saveMerged());
    EXPECT_EQ(stored().photos[1].source, renewed);
    EXPECT_EQ(stored().photos[1].caption, "typed");
}

TEST_F(DocumentSessionTest, AFileThatIsGoneIsWrittenAgain) {
    DocumentSession session{file};
    std::filesystem::remove(file);
    EXPECT_FALSE(session.isChangedOnDisk());
    EXPECT_TRUE(session.save());
    EXPECT_EQ(stored(), session.project());
}

TEST_F(DocumentSessionTest, ReloadingTakesWhatIsInTheFileAndForgetsTheHistory) {
    DocumentSession mine{file};
    caption(mine, "mine");
    DocumentSession theirs{file};
    caption(theirs, "theirs");
    theirs.save();
    mine.reload();
    EXPECT_EQ(mine.project(), theirs.project());
    EXPECT_FALSE(mine.document().isModified());
    EXPECT_FALSE(mine.document().canUndo());
    EXPECT_FALSE(mine.isChangedOnDisk());
}

TEST_F(DocumentSessionTest, AFailedReloadLeavesAllAsItIs) {
    DocumentSession session{file};
    caption(session, "mine");
    const Project before = session.project();
    Foundation::writeFileAtomically(file, "{");
    EXPECT_THROW(session.reload(), ProjectStoreError);
    EXPECT_EQ(session.project(), before);
    EXPECT_TRUE(session.document().canUndo());
    EXPECT_TRUE(session.isChangedOnDisk());
    EXPECT_THROW(session.save(), SaveConflict);
}

TEST_F(DocumentSessionTest, ANewDocumentGetsItsFileWhenItIsSavedAs) {
    DocumentSession session;
    EXPECT_EQ(session.path(), std::nullopt);
    EXPECT_FALSE(session.isChangedOnDisk());
    session.document().edit("Title", [](Project& project) { project.settings.captionPrompt = "short"; });
    const std::filesystem::path other = folder / "other.roamly";
    session.saveAs(other);
    EXPECT_EQ(session.path(), other);
    EXPECT_EQ(ProjectStore::load(other).project, session.project());
    EXPECT_FALSE(session.document().isModified());
    EXPECT_FALSE(session.isChangedOnDisk());
    // Another one's file is replaced.
    session.saveAs(file);
    EXPECT_EQ(stored(), session.project());
}

TEST_F(DocumentSessionTest, ADocumentThatCannotBeSavedAsKeepsItsFile) {
    DocumentSession session{file};
    caption(session, "x");
    EXPECT_THROW(session.saveAs(folder / "no/where.roamly"), ProjectStoreError);
    EXPECT_EQ(session.path(), file);
    EXPECT_TRUE(session.document().isModified());
    EXPECT_TRUE(session.save());
}

TEST_F(DocumentSessionTest, IdentifiersThatWereGivenOutOnReadingAreSaved) {
    Foundation::writeFileAtomically(
        file, R"({"sources":[{"folder":{"bookmark":"","displayPath":"/x"}}],"photos":[],"settings":{},)"
              R"("usesManualOrder":false})");
    DocumentSession session{file};
    EXPECT_FALSE(session.document().isModified());
    EXPECT_TRUE(session.save());
    EXPECT_EQ(stored(), session.project());
    EXPECT_FALSE(session.save());
}

TEST_F(DocumentSessionTest, AQuickChangeHoldsTheLockUntilItIsWritten) {
    DocumentSession session{file, {}, DocumentSession::Lock::UntilWritten};
    EXPECT_FALSE(isFree());
    caption(session, "x");
    EXPECT_TRUE(session.save());
    EXPECT_TRUE(isFree());
}

TEST_F(DocumentSessionTest, WhoWaitsIsToldOnceAndGoesOnWhenTheFileIsFree) {
    auto held = std::make_unique<ProjectLock>(file, LockWait{});
    int told = 0;
    const DocumentSession session{file, {.stop = {}, .waiting = [&] {
                                             ++told;
                                             held.reset();
                                         }}};
    EXPECT_EQ(told, 1);
    EXPECT_EQ(session.project(), stored());
}

TEST_F(DocumentSessionTest, WaitingCanBeCancelledAndNothingIsWrittenThen) {
    DocumentSession session{file};
    caption(session, "x");
    const Project before = stored();
    const ProjectLock held{file, {}};
    for (const auto save : {+[](DocumentSession&one, const LockWait&wait) { one.save(wait); },
                            +[](DocumentSession&one, const LockWait&wait) { one.saveMerged(wait); },
                            +[](DocumentSession&one, const LockWait&wait) { one.reload(wait); }}) {
        std::stop_source stop;
        EXPECT_THROW(save(session, {.stop = stop.get_token(), .waiting = [&] { stop.request_stop(); }}),
                     Foundation::Cancelled);
    }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(session.project().photos[0].caption, "x");
}
