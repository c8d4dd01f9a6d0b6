// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/RandomProject.h>
#include <Timeline/MusicFit.h>
#include <Timeline/TimelineBuilder.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

namespace Timeline {
namespace {

using ProjectModel::ChapterStyle;
using ProjectModel::Project;

/// So many photos in the film, of two places in turn where that is wished.
Project projectOf(int photoCount, bool hasPlaces) {
    ProjectModel::Testing::RandomProject random{62};
    Project project;
    for (int index = 0; index < photoCount; ++index) {
        ProjectModel::PhotoItem photo = random.photo();
        photo.isSelected = true;
        photo.location.reset();
        if (hasPlaces)
            photo.location = ProjectModel::ResolvedLocation{.city = index / 3 % 2 == 0 ? "Lisbon" : "Sintra",
                                                            .country = "Portugal",
                                                            .provenance = ProjectModel::Provenance::user};
        project.photos.push_back(photo);
    }
    return project;
}

double lengthWith(const Project& project, EffectiveSettings settings, double photoDuration) {
    settings.photoDuration = photoDuration;
    return TimelineBuilder::build(project, settings).totalDuration;
}

TEST(MusicFit, TheFilmEndsWithTheMusic) {
    for (const int photoCount : {1, 2, 7, 40, 500}) {
        for (const bool hasPlaces : {false, true}) {
            for (const ChapterStyle style : {ChapterStyle::card, ChapterStyle::overlay}) {
                for (const double crossfade : {0.0, 0.75, 3.0}) {
                    for (const double music : {1.0, 30.0, 190.5, 3600.0}) {
                        SCOPED_TRACE(testing::Message() << photoCount << " photos, places " << hasPlaces
                                                        << ", overlay " << (style == ChapterStyle::overlay)
                                                        << ", dissolve " << crossfade << ", music " << music);
                        const Project project = projectOf(photoCount, hasPlaces);
                        EffectiveSettings settings;
                        settings.crossfade = crossfade;
                        settings.chapterStyle = style;
                        const std::optional<MusicFit> fit = fitToMusic(project, settings, music);
                        ASSERT_TRUE(fit);
                        EXPECT_NEAR(lengthWith(project, settings, fit->photoDuration), music * fit->plays,
                                    1e-6);
                        EXPECT_GE(fit->photoDuration, 2.0 - 1e-9);
                    }
                }
            }
        }
    }
}

TEST(MusicFit, PlaysMusicNoMoreOftenThanItTakes) {
    const Project project = projectOf(10, false);
    const EffectiveSettings settings;
    const double least = lengthWith(project, settings, 2.0);
    EXPECT_EQ(fitToMusic(project, settings, least)->plays, 1);
    EXPECT_DOUBLE_EQ(fitToMusic(project, settings, least)->photoDuration, 2.0);
    EXPECT_EQ(fitToMusic(project, settings, least + 0.1)->plays, 1);
    EXPECT_EQ(fitToMusic(project, settings, least - 0.1)->plays, 2);
    EXPECT_EQ(fitToMusic(project, settings, least / 3 + 0.01)->plays, 3);
}

TEST(MusicFit, DoesNotDependOnThePresentDuration) {
    const Project project = projectOf(12, true);
    EffectiveSettings settings;
    const auto fit = fitToMusic(project, settings, 100);
    settings.photoDuration = 17;
    EXPECT_EQ(fitToMusic(project, settings, 100), fit);
}

TEST(MusicFit, NothingFitsWithoutPhotosOrMusic) {
    Project project = projectOf(3, false);
    EXPECT_FALSE(fitToMusic(project, {}, 0));
    EXPECT_FALSE(fitToMusic(project, {}, -5));
    EXPECT_FALSE(fitToMusic(project, {}, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(fitToMusic(project, {}, std::numeric_limits<double>::infinity()));
    for (ProjectModel::PhotoItem& photo : project.photos)
        photo.isSelected = false;
    EXPECT_FALSE(fitToMusic(project, {}, 100));
    EXPECT_FALSE(fitToMusic(Project{}, {}, 100));
}

} // namespace
} // namespace Timeline
