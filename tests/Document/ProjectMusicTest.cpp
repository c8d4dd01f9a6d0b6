// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/Bookmark.h>
#include <Foundation/Cancellation.h>
#include <Roamly/Document/ProjectMusic.h>
#include <Roamly/Document/Refusal.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestTone.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Document::Refusal;

class ProjectMusicTest : public testing::Test {
protected:
    std::filesystem::path noise() {
        Foundation::writeFileAtomically(folder / "fado.mp3", "no music");
        return folder / "fado.mp3";
    }
    static ProjectModel::Project with(const std::filesystem::path& file) {
        ProjectModel::Project project = ProjectModel::Project::empty();
        project.userSetMusic(Document::musicSelection(file));
        return project;
    }

    TemporaryFolder folder;
};

void expectNoMusic(const std::filesystem::path& file, const std::string& sentence) {
    try {
        (void)Document::musicSelection(file);
        FAIL() << file;
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.kind(), Refusal::Kind::noMusic);
        EXPECT_EQ(refusal.what(), sentence);
    }
}

} // namespace

TEST_F(ProjectMusicTest, ASelectionLeadsBackToTheFileAndKeepsItsName) {
    const auto tone = TestTone::write(folder / "tone.wav");
    const ProjectModel::MusicSelection music = Document::musicSelection(tone);
    EXPECT_EQ(music.displayName, "tone.wav");
    EXPECT_EQ(Foundation::BookmarkResolver{}.resolvedFile(music.bookmark), tone);
}

TEST_F(ProjectMusicTest, WhatIsNoFileIsNoMusic) {
    expectNoMusic("nowhere.mp3", "There is no music file “nowhere.mp3”.");
    expectNoMusic(folder.path(),
                  "“" + folder.path().string() + "” is not a file that music can be read from.");
}

TEST_F(ProjectMusicTest, AFileIsPlayableWhenItsSoundCanBeDecoded) {
    EXPECT_TRUE(Document::isPlayable(TestTone::write(folder / "tone.wav"), {}));
    EXPECT_FALSE(Document::isPlayable(noise(), {}));
    EXPECT_EQ(Document::notPlayableWarning("fado.mp3"),
              "“fado.mp3” can’t be played; no movie can be made with it.");
}

TEST_F(ProjectMusicTest, AStoppedLookIsNoAnswer) {
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW((void)Document::isPlayable(noise(), stop.get_token()), Foundation::Cancelled);
}

TEST_F(ProjectMusicTest, OnlyMusicThatIsThereAndCannotBePlayedStopsAMovie) {
    EXPECT_NO_THROW(Document::checkMusicIsPlayable(ProjectModel::Project::empty(), {}));
    EXPECT_NO_THROW(Document::checkMusicIsPlayable(with(TestTone::write(folder / "tone.wav")), {}));
    const ProjectModel::Project project = with(noise());
    try {
        Document::checkMusicIsPlayable(project, {});
        FAIL();
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.kind(), Refusal::Kind::musicNotPlayable);
        EXPECT_TRUE(std::string{refusal.what()}.ends_with("fado.mp3” can’t be played.")) << refusal.what();
    }
    std::filesystem::remove(folder / "fado.mp3");
    EXPECT_NO_THROW(Document::checkMusicIsPlayable(project, {}));
}
