// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ProjectLock.h>
#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Jobs/ProjectFile.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <memory>

using Document::ProjectDocument;
using Jobs::ProjectFile;
using Outcome = Jobs::ProjectFile::Outcome;

namespace {

class ProjectFileTest : public testing::Test {
protected:
    ProjectFileTest() { Document::ProjectStore::save(path, projectOf(2)); }

    static ProjectModel::Project projectOf(int photos) {
        ProjectModel::Project project;
        for (int number = 1; number <= photos; ++number)
            project.photos.push_back(TestPhotos::item(number));
        return project;
    }

    /// Begins something and waits for its end.
    template <typename Begin>
    ProjectFile::Ending done(const Begin& begin) {
        std::optional<ProjectFile::Ending> ending;
        EXPECT_TRUE(begin([&](const ProjectFile::Ending& how) { ending = how; }));
        queue.runUntil([&] { return ending.has_value(); });
        return *ending;
    }
    ProjectFile::Ending open() {
        return done([&](auto ended) { return file.open(path, ended); });
    }
    ProjectFile::Ending
    save(ProjectFile::AnothersChange anothersChange = ProjectFile::AnothersChange::Refuse) {
        return done([&](auto ended) { return file.save(anothersChange, ended); });
    }

    void deselect(int number) {
        document.edit("Leave Out", [&](ProjectModel::Project& project) {
            project.userSetSelection(false, TestPhotos::uuid(number));
        });
    }
    ProjectModel::Project onDisk() const { return Document::ProjectStore::load(path).project; }

    TemporaryFolder folder;
    std::filesystem::path path = folder / "trip.roamly";
    Jobs::ActionQueue queue;
    ProjectDocument document;
    ProjectFile file{queue.executor(), document};
};

} // namespace

TEST_F(ProjectFileTest, OpeningFillsTheDocumentWhichIsUnmodifiedThen) {
    EXPECT_EQ(open().outcome, Outcome::Done);
    EXPECT_EQ(document.project().photos.size(), 2U);
    EXPECT_EQ(file.path(), path);
    EXPECT_FALSE(document.isModified());
    EXPECT_FALSE(file.isChangedOnDisk());
}

TEST_F(ProjectFileTest, AFileThatCannotBeReadLeavesTheDocumentAsItWas) {
    (void)open();
    const auto ending = done([&](auto ended) { return file.open(folder / "nothing.roamly", ended); });
    EXPECT_EQ(ending.outcome, Outcome::Failed);
    EXPECT_NE(ending.sentence.find("nothing.roamly"), std::string::npos) << ending.sentence;
    EXPECT_EQ(file.path(), path);
    EXPECT_EQ(document.project().photos.size(), 2U);
}

TEST_F(ProjectFileTest, SavingWritesTheDocument) {
    (void)open();
    deselect(1);
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(save().outcome, Outcome::Done);
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(onDisk(), document.project());
    EXPECT_FALSE(file.isChangedOnDisk());
}

TEST_F(ProjectFileTest, WhatIsChangedWhileItIsSavedStaysModified) {
    (void)open();
    deselect(1);
    std::optional<ProjectFile::Ending> ending;
    ASSERT_TRUE(file.save(ProjectFile::AnothersChange::Refuse,
                          [&](const ProjectFile::Ending& how) { ending = how; }));
    deselect(2);
    EXPECT_FALSE(file.save(ProjectFile::AnothersChange::Refuse, {}));
    queue.runUntil([&] { return ending.has_value(); });
    EXPECT_TRUE(document.isModified());
    EXPECT_TRUE(onDisk().photos[1].isSelected);
    document.undo();
    EXPECT_FALSE(document.isModified());
}

TEST_F(ProjectFileTest, AnotherProgramsChangeIsNotOverwrittenUnlessToldTo) {
    (void)open();
    deselect(1);
    Document::ProjectStore::save(path, projectOf(3));
    EXPECT_TRUE(file.isChangedOnDisk());
    const auto refused = save();
    EXPECT_EQ(refused.outcome, Outcome::Conflict);
    EXPECT_FALSE(refused.sentence.empty());
    EXPECT_EQ(onDisk().photos.size(), 3U);
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(save(ProjectFile::AnothersChange::Overwrite).outcome, Outcome::Done);
    EXPECT_EQ(onDisk(), document.project());
}

TEST_F(ProjectFileTest, ReloadingTakesTheFilesChange) {
    (void)open();
    deselect(1);
    Document::ProjectStore::save(path, projectOf(3));
    EXPECT_EQ(done([&](auto ended) { return file.reload(ended); }).outcome, Outcome::Done);
    EXPECT_EQ(document.project().photos.size(), 3U);
    EXPECT_FALSE(document.isModified());
}

TEST_F(ProjectFileTest, SavingAsGivesTheDocumentItsNewFile) {
    (void)open();
    deselect(1);
    const auto copy = folder / "copy.roamly";
    EXPECT_EQ(done([&](auto ended) { return file.saveAs(copy, ended); }).outcome, Outcome::Done);
    EXPECT_EQ(file.path(), copy);
    EXPECT_TRUE(onDisk().photos[0].isSelected);
    EXPECT_FALSE(document.isModified());
}

TEST_F(ProjectFileTest, AFileThatAnotherProgramHoldsIsWaitedForAndCanBeGivenUp) {
    (void)open();
    deselect(1);
    auto held = std::make_unique<Document::ProjectLock>(path, Document::LockWait{});
    std::optional<ProjectFile::Ending> ending;
    const auto remember = [&](const ProjectFile::Ending& how) { ending = how; };
    ASSERT_TRUE(file.save(ProjectFile::AnothersChange::Refuse, remember));
    queue.runUntil([&] { return file.state().isWaiting; });
    file.cancel();
    queue.runUntil([&] { return ending.has_value(); });
    EXPECT_EQ(ending->outcome, Outcome::Cancelled);
    EXPECT_TRUE(document.isModified());
    EXPECT_TRUE(onDisk().photos[0].isSelected);

    ending.reset();
    ASSERT_TRUE(file.save(ProjectFile::AnothersChange::Refuse, remember));
    queue.runUntil([&] { return file.state().isWaiting; });
    held.reset();
    queue.runUntil([&] { return ending.has_value(); });
    EXPECT_EQ(ending->outcome, Outcome::Done);
    EXPECT_EQ(file.state().doing, ProjectFile::Doing::Nothing);
}
