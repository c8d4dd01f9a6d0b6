// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/FilmSummary.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

using namespace Document;

namespace {

ProjectModel::Project projectOf(int photos) {
    ProjectModel::Project project;
    for (int number = 1; number <= photos; ++number)
        project.photos.push_back(TestPhotos::item(number));
    return project;
}

} // namespace

TEST(FilmSummary, ItCountsWhatIsInTheFilmAndHowLongItIs) {
    ProjectModel::Project project = projectOf(3);
    project.photos[1].isSelected = false;
    Timeline::EffectiveSettings settings;
    settings.crossfade = 0;
    const FilmSummary summary = summarize(project, settings, 60);
    EXPECT_EQ(summary.selected, 2U);
    EXPECT_EQ(summary.photos, 3U);
    EXPECT_DOUBLE_EQ(summary.film, 10);
    EXPECT_FALSE(summary.hasMusic);
    EXPECT_FALSE(summary.music);
    EXPECT_EQ(describe(summary), "2 of 3 photos selected · film 0:10 · no music");
}

TEST(FilmSummary, MusicShorterThanTheFilmIsLooped) {
    FilmSummary summary{82, 146, 420, true, 190};
    EXPECT_EQ(describe(summary), "82 of 146 photos selected · film 7:00 · music 3:10, looped");
    summary.music = 420;
    EXPECT_EQ(describe(summary), "82 of 146 photos selected · film 7:00 · music 7:00");
    summary.music.reset();
    EXPECT_EQ(describe(summary), "82 of 146 photos selected · film 7:00 · music");
}

TEST(FilmSummary, AnEmptyProjectHasNoFilmToSpeakOf) {
    EXPECT_EQ(describe(summarize({}, {}, std::nullopt)), "No photos");
}

TEST(FilmSummary, OnePhotoReadsInTheSingular) {
    EXPECT_EQ(describe(FilmSummary{1, 1, 5, false, {}}), "1 of 1 photo selected · film 0:05 · no music");
}

TEST(FilmSummary, LongFilmsAreToldInHours) {
    EXPECT_EQ(clockText(0), "0:00");
    EXPECT_EQ(clockText(59.6), "1:00");
    EXPECT_EQ(clockText(3723), "1:02:03");
}
