// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/RandomProject.h>
#include <Timeline/TimelineBuilder.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace Timeline {
namespace {

using ProjectModel::ChapterStyle;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;

using Text = std::optional<std::string>;

ResolvedLocation place(Text city, Text country, Provenance provenance = Provenance::geocoded) {
    return {.city = std::move(city), .country = std::move(country), .provenance = provenance};
}

PhotoItem photo(std::optional<ResolvedLocation> location = std::nullopt) {
    static ProjectModel::Testing::RandomProject random{61};
    return {
        .id = random.uuid(),
        .source = ProjectModel::LibraryPhotoRef{},
        .captureDate = std::nullopt,
        .coordinate = std::nullopt,
        .location = std::move(location),
        .clusterID = std::nullopt,
        .qualityScore = std::nullopt,
        .caption = std::nullopt,
        .captionProvenance = std::nullopt,
        .isSelected = true,
        .selectionProvenance = Provenance::proposed,
        .isMissing = false,
        .sourceID = std::nullopt,
    };
}

Project projectOf(std::vector<PhotoItem> photos) {
    Project project;
    project.photos = std::move(photos);
    return project;
}

EffectiveSettings settings(ChapterStyle style, double photoDuration = 4.0) {
    EffectiveSettings settings;
    settings.photoDuration = photoDuration;
    settings.chapterStyle = style;
    return settings;
}

std::vector<PhotoSegment> photosOf(const SlideshowTimeline& timeline) {
    std::vector<PhotoSegment> photos;
    for (const TimelineItem& item : timeline.items) {
        if (const auto* segment = std::get_if<PhotoSegment>(&item))
            photos.push_back(*segment);
    }
    return photos;
}

std::vector<ChapterSegment> chaptersOf(const SlideshowTimeline& timeline) {
    std::vector<ChapterSegment> chapters;
    for (const TimelineItem& item : timeline.items) {
        if (const auto* segment = std::get_if<ChapterSegment>(&item))
            chapters.push_back(*segment);
    }
    return chapters;
}

const ResolvedLocation paris = place("Paris", "France");
const ResolvedLocation rome = place("Rome", "Italy");

// Which photos

TEST(TimelineBuilderTest, WithoutSelectedPhotosThereIsNothingNotEvenMusic) {
    Project project = projectOf({photo(paris), photo()});
    project.music = ProjectModel::MusicSelection{.bookmark = {1}, .displayName = "m"};
    for (PhotoItem& item : project.photos)
        item.isSelected = false;
    EXPECT_EQ(TimelineBuilder::build(project, {}), SlideshowTimeline{});
    project.photos.clear();
    EXPECT_EQ(TimelineBuilder::build(project, {}), SlideshowTimeline{});
}

TEST(TimelineBuilderTest, ShowsTheSelectedPhotosInTheirStoredOrderMissingOnesIncluded) {
    Project project = projectOf({photo(), photo(), photo(), photo()});
    project.photos[0].captureDate = Foundation::Instant{std::chrono::seconds{100}};
    project.photos[1].isSelected = false;
    project.photos[2].isMissing = true;
    project.photos[3].captureDate = Foundation::Instant{std::chrono::seconds{50}};
    const std::vector<PhotoSegment> photos = photosOf(TimelineBuilder::build(project, {}));
    ASSERT_EQ(photos.size(), 3U);
    EXPECT_EQ(photos[0].photoID, project.photos[0].id);
    EXPECT_EQ(photos[1].photoID, project.photos[2].id);
    EXPECT_EQ(photos[2].photoID, project.photos[3].id);
}

// Times

TEST(TimelineBuilderTest, OverlapsPhotosByTheCrossfade) {
    const SlideshowTimeline timeline =
        TimelineBuilder::build(projectOf({photo(), photo(), photo()}), settings(ChapterStyle::card));
    const std::vector<PhotoSegment> photos = photosOf(timeline);
    EXPECT_EQ(photos[0].start, 0);
    EXPECT_EQ(photos[1].start, 3.25);
    EXPECT_EQ(photos[2].start, 6.5);
    for (const PhotoSegment& segment : photos)
        EXPECT_EQ(segment.duration, 4.0);
    EXPECT_FALSE(photos[0].crossfadesFromPrevious);
    EXPECT_TRUE(photos[1].crossfadesFromPrevious);
    EXPECT_TRUE(photos[2].crossfadesFromPrevious);
    EXPECT_EQ(timeline.totalDuration, 10.5);
}

TEST(TimelineBuilderTest, ADurationThatIsNotPositiveBecomesFourSecondsWithTheWholeCrossfade) {
    for (const double duration : {0.0, -0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
        const SlideshowTimeline timeline =
            TimelineBuilder::build(projectOf({photo(), photo()}), settings(ChapterStyle::card, duration));
        EXPECT_EQ(photosOf(timeline)[0].duration, 4.0);
        EXPECT_EQ(photosOf(timeline)[1].start, 4.0 - 0.75);
    }
}

TEST(TimelineBuilderTest, AShortDurationCutsTheCrossfadeToItsHalf) {
    const SlideshowTimeline timeline =
        TimelineBuilder::build(projectOf({photo(), photo(), photo()}), settings(ChapterStyle::card, 1.0));
    EXPECT_EQ(photosOf(timeline)[1].start, 0.5);
    EXPECT_EQ(photosOf(timeline)[2].start, 1.0);
    EXPECT_EQ(timeline.totalDuration, 2.0);
}

TEST(TimelineBuilderTest, ANegativeCrossfadeJoinsPhotosEndToEnd) {
    EffectiveSettings joined = settings(ChapterStyle::card);
    joined.crossfade = -1;
    const SlideshowTimeline timeline = TimelineBuilder::build(projectOf({photo(), photo(), photo()}), joined);
    EXPECT_EQ(photosOf(timeline)[1].start, 4.0);
    EXPECT_EQ(photosOf(timeline)[2].start, 8.0);
    EXPECT_EQ(timeline.totalDuration, 12.0);
    EXPECT_TRUE(photosOf(timeline)[1].crossfadesFromPrevious);
}

// Chapters

TEST(TimelineBuilderTest, AnUnlabelledPhotoDoesNotEndItsChapter) {
    const SlideshowTimeline timeline = TimelineBuilder::build(
        projectOf({photo(paris), photo(), photo(paris)}), settings(ChapterStyle::card));
    ASSERT_EQ(timeline.items.size(), 4U);
    EXPECT_EQ(std::get<ChapterSegment>(timeline.items[0]),
              (ChapterSegment{.title = "Paris, France", .start = 0, .duration = 3.0}));
    const std::vector<PhotoSegment> photos = photosOf(timeline);
    EXPECT_EQ(photos[0].start, 3.0);
    EXPECT_FALSE(photos[0].crossfadesFromPrevious);
    EXPECT_TRUE(photos[1].crossfadesFromPrevious);
    EXPECT_TRUE(photos[2].crossfadesFromPrevious);
}

TEST(TimelineBuilderTest, ACardStandsBetweenTheEndOfOnePhotoAndTheCutToTheNext) {
    const SlideshowTimeline timeline =
        TimelineBuilder::build(projectOf({photo(), photo(rome)}), settings(ChapterStyle::card));
    ASSERT_EQ(timeline.items.size(), 3U);
    EXPECT_EQ(std::get<PhotoSegment>(timeline.items[0]).start, 0);
    EXPECT_EQ(std::get<ChapterSegment>(timeline.items[1]),
              (ChapterSegment{.title = "Rome, Italy", .start = 4.0, .duration = 3.0}));
    const auto& second = std::get<PhotoSegment>(timeline.items[2]);
    EXPECT_EQ(second.start, 7.0);
    EXPECT_FALSE(second.crossfadesFromPrevious);
    EXPECT_EQ(second.overlay.chapterTitle, std::nullopt);
    EXPECT_EQ(timeline.totalDuration, 11.0);
}

TEST(TimelineBuilderTest, EveryChangeOfPlaceGetsACardAlsoTheWayBack) {
    const SlideshowTimeline timeline = TimelineBuilder::build(
        projectOf({photo(paris), photo(rome), photo(), photo(paris)}), settings(ChapterStyle::card));
    std::vector<std::string> titles;
    for (const ChapterSegment& chapter : chaptersOf(timeline))
        titles.push_back(chapter.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"Paris, France", "Rome, Italy", "Paris, France"}));
}

TEST(TimelineBuilderTest, OnlySelectedPhotosMakeChapters) {
    Project project = projectOf({photo(paris), photo(rome), photo(paris)});
    project.photos[1].isSelected = false;
    EXPECT_EQ(chaptersOf(TimelineBuilder::build(project, settings(ChapterStyle::card))).size(), 1U);
}

TEST(TimelineBuilderTest, OverlayStyleTitlesTheFirstPhotoOfEachPlaceAndCrossfadesThroughout) {
    const SlideshowTimeline timeline = TimelineBuilder::build(
        projectOf({photo(), photo(paris), photo(paris), photo(), photo(rome), photo(paris)}),
        settings(ChapterStyle::overlay));
    EXPECT_TRUE(chaptersOf(timeline).empty());
    const std::vector<PhotoSegment> photos = photosOf(timeline);
    const std::vector<Text> titles{std::nullopt, "Paris, France", std::nullopt,
                                   std::nullopt, "Rome, Italy",   "Paris, France"};
    for (std::size_t i = 0; i < photos.size(); ++i) {
        EXPECT_EQ(photos[i].overlay.chapterTitle, titles[i]) << i;
        EXPECT_EQ(photos[i].crossfadesFromPrevious, i > 0) << i;
        EXPECT_EQ(photos[i].start, 3.25 * static_cast<double>(i));
    }
}

TEST(TimelineBuilderTest, PlacesAreTheSameOnlyWhenBothPartsAgree) {
    const auto countCards = [](const ResolvedLocation& a, const ResolvedLocation& b) {
        return chaptersOf(
                   TimelineBuilder::build(projectOf({photo(a), photo(b)}), settings(ChapterStyle::card)))
            .size();
    };
    EXPECT_EQ(countCards(paris, place("Paris", "France", Provenance::user)), 1U);
    EXPECT_EQ(countCards(paris, place("Paris", std::nullopt)), 2U);
    EXPECT_EQ(countCards(paris, place(std::nullopt, "France")), 2U);
    EXPECT_EQ(countCards(paris, place("paris", "France")), 2U);
    EXPECT_EQ(countCards(paris, place("Paris, France", std::nullopt)), 1U);
}

// Labels and overlays

TEST(TimelineBuilderTest, LabelsJoinWhatIsKnownOfThePlace) {
    const auto labelOf = [](std::optional<ResolvedLocation> location) {
        return TimelineBuilder::locationLabel(photo(std::move(location)));
    };
    EXPECT_EQ(labelOf(place("Lisbon", "Portugal")), "Lisbon, Portugal");
    EXPECT_EQ(labelOf(place(std::nullopt, "Portugal")), "Portugal");
    EXPECT_EQ(labelOf(place("Lisbon", std::nullopt)), "Lisbon");
    EXPECT_EQ(labelOf(place(std::nullopt, std::nullopt)), std::nullopt);
    EXPECT_EQ(labelOf(std::nullopt), std::nullopt);
}

TEST(TimelineBuilderTest, AnEmptyCityIsKeptInTheLabel) {
    const auto labelOf = [](const ResolvedLocation& location) {
        return TimelineBuilder::locationLabel(photo(location));
    };
    EXPECT_EQ(labelOf(place("", "Spain")), ", Spain");
    EXPECT_EQ(labelOf(place("Madrid", "")), "Madrid, ");
    EXPECT_EQ(labelOf(place("", "")), ", ");
    EXPECT_EQ(labelOf(place("", std::nullopt)), std::nullopt);
    EXPECT_EQ(labelOf(place(std::nullopt, "")), std::nullopt);
}

TEST(TimelineBuilderTest, OnlyAnInferredPlaceIsApproximate) {
    for (const Provenance provenance : {Provenance::proposed, Provenance::geocoded, Provenance::inferred,
                                        Provenance::generated, Provenance::user}) {
        const OverlaySpec overlay =
            TimelineBuilder::overlay(photo(place("Rome", std::nullopt, provenance)), true, std::nullopt);
        EXPECT_EQ(overlay.isApproximate, provenance == Provenance::inferred);
        EXPECT_EQ(overlay.locationText, "Rome");
    }
    EXPECT_FALSE(TimelineBuilder::overlay(photo(), true, std::nullopt).isApproximate);
    // The place has no text, and is a guess all the same.
    EXPECT_TRUE(TimelineBuilder::overlay(photo(place(std::nullopt, std::nullopt, Provenance::inferred)), true,
                                         std::nullopt)
                    .isApproximate);
}

TEST(TimelineBuilderTest, CaptionsShowOnlyWhenEnabledAndEmptyOnesPassThrough) {
    PhotoItem captioned = photo();
    captioned.caption = "At the river";
    EXPECT_EQ(TimelineBuilder::overlay(captioned, true, std::nullopt).caption, "At the river");
    EXPECT_EQ(TimelineBuilder::overlay(captioned, false, std::nullopt).caption, std::nullopt);
    captioned.caption = "";
    EXPECT_EQ(TimelineBuilder::overlay(captioned, true, std::nullopt).caption, "");
    EXPECT_EQ(TimelineBuilder::overlay(photo(), true, std::nullopt).caption, std::nullopt);
    EXPECT_EQ(TimelineBuilder::overlay(photo(), true, "Rome").chapterTitle, "Rome");
}

TEST(TimelineBuilderTest, CaptionsFollowTheSettingInTheTimeline) {
    Project project = projectOf({photo(paris)});
    project.photos[0].caption = "At the river";
    EffectiveSettings shown = settings(ChapterStyle::overlay);
    EXPECT_EQ(photosOf(TimelineBuilder::build(project, shown))[0].overlay,
              (OverlaySpec{.locationText = "Paris, France",
                           .isApproximate = false,
                           .caption = "At the river",
                           .chapterTitle = "Paris, France"}));
    shown.captionsEnabled = false;
    EXPECT_EQ(photosOf(TimelineBuilder::build(project, shown))[0].overlay.caption, std::nullopt);
}

// Motion and music

TEST(TimelineBuilderTest, EveryPhotoMovesByItsIdentifierWhenMotionIsEnabled) {
    const Project project = projectOf({photo(), photo()});
    EffectiveSettings moving = settings(ChapterStyle::card);
    for (const PhotoSegment& segment : photosOf(TimelineBuilder::build(project, moving)))
        EXPECT_EQ(segment.kenBurns, KenBurns::transform(segment.photoID));
    moving.kenBurnsEnabled = false;
    for (const PhotoSegment& segment : photosOf(TimelineBuilder::build(project, moving)))
        EXPECT_EQ(segment.kenBurns, std::nullopt);
}

TEST(TimelineBuilderTest, MusicLastsAsLongAsTheTimelineWithTheSettingsFades) {
    Project project = projectOf({photo(), photo()});
    EXPECT_EQ(TimelineBuilder::build(project, {}).audio, std::nullopt);
    project.music = ProjectModel::MusicSelection{.bookmark = {1, 2, 3}, .displayName = "m"};
    EffectiveSettings faded;
    faded.musicFadeIn = 1.5;
    faded.musicFadeOut = 2.5;
    const SlideshowTimeline timeline = TimelineBuilder::build(project, faded);
    EXPECT_EQ(timeline.audio, (AudioPlan{.musicBookmark = {1, 2, 3},
                                         .totalDuration = timeline.totalDuration,
                                         .fadeIn = 1.5,
                                         .fadeOut = 2.5}));
}

TEST(TimelineBuilderTest, PlaybackConstantsAreTheDefaultSettings) {
    const EffectiveSettings defaults;
    EXPECT_EQ(defaults.crossfade, 0.75);
    EXPECT_EQ(defaults.chapterDuration, 3.0);
    EXPECT_EQ(defaults.musicFadeIn, 2.0);
    EXPECT_EQ(defaults.musicFadeOut, 3.0);
}

// Properties

EffectiveSettings randomSettings(ProjectModel::Testing::RandomProject& random) {
    EffectiveSettings settings;
    settings.photoDuration = random.pick({-1.0, 0.0, 0.3, 1.0, 1.5, 4.0, 5.0, 7.3});
    settings.crossfade = random.pick({-1.0, 0.0, 0.5, 0.75, 3.0});
    settings.chapterDuration = random.pick({0.0, 0.1, 3.0});
    settings.kenBurnsEnabled = random.chance(0.5);
    settings.captionsEnabled = random.chance(0.5);
    settings.chapterStyle = random.pick({ChapterStyle::card, ChapterStyle::overlay});
    return settings;
}

TEST(TimelineBuilderTest, EveryTimelineObeysTheSchedule) {
    ProjectModel::Testing::RandomProject random{62};
    constexpr double tolerance = 1e-9;
    for (int i = 0; i < 1000; ++i) {
        const Project project = random.project(20);
        const EffectiveSettings settings = randomSettings(random);
        const SlideshowTimeline timeline = TimelineBuilder::build(project, settings);
        ASSERT_EQ(TimelineBuilder::build(project, settings), timeline);

        const double photoDuration = settings.photoDuration > 0 ? settings.photoDuration : 4.0;
        const double crossfade = std::max(0.0, std::min(photoDuration / 2, settings.crossfade));
        const PhotoSegment* previous = nullptr;
        const ChapterSegment* card = nullptr;
        std::size_t photos = 0;
        double end = 0;
        for (const TimelineItem& item : timeline.items) {
            if (const auto* chapter = std::get_if<ChapterSegment>(&item)) {
                ASSERT_EQ(settings.chapterStyle, ChapterStyle::card);
                ASSERT_EQ(card, nullptr);
                ASSERT_NEAR(chapter->start, previous ? previous->start + photoDuration : 0.0, tolerance);
                ASSERT_FALSE(chapter->title.empty());
                card = chapter;
                continue;
            }
            const auto& photo = std::get<PhotoSegment>(item);
            ASSERT_EQ(photo.duration, photoDuration);
            ASSERT_EQ(photo.crossfadesFromPrevious, previous != nullptr && card == nullptr);
            if (card) {
                ASSERT_EQ(photo.start, card->start + card->duration);
            } else if (previous) {
                ASSERT_NEAR(previous->start + previous->duration - photo.start, crossfade, tolerance);
            } else {
                ASSERT_EQ(photo.start, 0);
            }
            ASSERT_EQ(photo.kenBurns.has_value(), settings.kenBurnsEnabled);
            if (settings.chapterStyle == ChapterStyle::card) {
                ASSERT_EQ(photo.overlay.chapterTitle, std::nullopt);
            }
            previous = &photo;
            card = nullptr;
            end = photo.start + photo.duration;
            ++photos;
        }
        ASSERT_EQ(card, nullptr);
        const auto selected = std::count_if(project.photos.begin(), project.photos.end(),
                                            [](const PhotoItem& item) { return item.isSelected; });
        ASSERT_EQ(photos, static_cast<std::size_t>(selected));
        ASSERT_NEAR(timeline.totalDuration, end, tolerance);
        ASSERT_EQ(timeline.audio.has_value(), photos > 0 && project.music.has_value());
    }
}

} // namespace
} // namespace Timeline
