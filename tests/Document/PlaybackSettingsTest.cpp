// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/PlaybackSettings.h>

#include <gtest/gtest.h>

using Document::AppSettings;
using Document::effectiveSettings;
using ProjectModel::ChapterStyle;
using ProjectModel::ProjectSettings;

TEST(PlaybackSettingsTest, WithoutAnySettingTheDefaultsHold) {
    const Timeline::EffectiveSettings settings = effectiveSettings(ProjectSettings{}, AppSettings{});
    EXPECT_EQ(settings.photoDuration, 5.0);
    EXPECT_EQ(settings.crossfade, 0.75);
    EXPECT_EQ(settings.chapterDuration, 3.0);
    EXPECT_EQ(settings.musicFadeIn, 2.0);
    EXPECT_EQ(settings.musicFadeOut, 3.0);
    EXPECT_TRUE(settings.kenBurnsEnabled);
    EXPECT_TRUE(settings.captionsEnabled);
    EXPECT_EQ(settings.chapterStyle, ChapterStyle::card);
}

TEST(PlaybackSettingsTest, TheUsersSettingsHoldWhereTheProjectSetsNothing) {
    AppSettings user;
    user.photoDuration = 9;
    user.kenBurnsEnabled = false;
    user.captionsEnabled = false;
    user.chapterStyle = ChapterStyle::overlay;
    const Timeline::EffectiveSettings settings = effectiveSettings(ProjectSettings{}, user);
    EXPECT_EQ(settings.photoDuration, 9.0);
    EXPECT_FALSE(settings.kenBurnsEnabled);
    EXPECT_FALSE(settings.captionsEnabled);
    EXPECT_EQ(settings.chapterStyle, ChapterStyle::overlay);
}

TEST(PlaybackSettingsTest, TheProjectsSettingsWinOverTheUsers) {
    AppSettings user;
    user.photoDuration = 9;
    user.chapterStyle = ChapterStyle::overlay;
    user.kenBurnsEnabled = false;
    ProjectSettings project;
    project.photoDuration = 2.5;
    project.chapterStyle = ChapterStyle::card;
    project.kenBurnsEnabled = true;
    project.captionsEnabled = false;
    const Timeline::EffectiveSettings settings = effectiveSettings(project, user);
    EXPECT_EQ(settings.photoDuration, 2.5);
    EXPECT_EQ(settings.chapterStyle, ChapterStyle::card);
    EXPECT_TRUE(settings.kenBurnsEnabled);
    EXPECT_FALSE(settings.captionsEnabled);
}
