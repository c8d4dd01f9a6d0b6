// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/RandomProject.h>
#include <Timeline/Playhead.h>
#include <Timeline/TimelineBuilder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

namespace Timeline {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

PhotoSegment photo(std::uint8_t number, double start, double duration, bool crossfades) {
    return {.photoID = {{number}},
            .start = start,
            .duration = duration,
            .crossfadesFromPrevious = crossfades,
            .kenBurns = std::nullopt,
            .overlay = {}};
}

ChapterSegment chapter(const char* title, double start, double duration) {
    return {.title = title, .start = start, .duration = duration};
}

PhotoState still(const PhotoSegment& segment, double progress) {
    PhotoState state;
    state.current = segment;
    state.progress = progress;
    return state;
}

SlideshowTimeline timelineOf(std::vector<TimelineItem> items, double totalDuration = 0) {
    return {.items = std::move(items), .totalDuration = totalDuration, .audio = std::nullopt};
}

const PhotoSegment first = photo(1, 0, 4, false);
const PhotoSegment second = photo(2, 3.25, 4, true);
const SlideshowTimeline twoPhotos = timelineOf({first, second}, 7.25);

// A card, a photo, a card, two photos.
const ChapterSegment paris = chapter("Paris", 0, 3);
const PhotoSegment inParis = photo(1, 3, 4, false);
const ChapterSegment rome = chapter("Rome", 7, 3);
const PhotoSegment inRome = photo(2, 10, 4, false);
const PhotoSegment alsoInRome = photo(3, 13.25, 4, true);
const SlideshowTimeline twoPlaces = timelineOf({paris, inParis, rome, inRome, alsoInRome}, 17.25);

TEST(PlayheadTest, IsAlwaysEmptyOnAnEmptyTimeline) {
    const Playhead playhead{{}, 0.75};
    for (const double time : {-infinity, -1.0, 0.0, 1.0, infinity, notANumber})
        EXPECT_EQ(playhead.state(time), RenderState{EmptyState{}});
}

TEST(PlayheadTest, IsEmptyBeforeTheFirstPhoto) {
    const Playhead playhead{twoPhotos, 0.75};
    for (const double time : {-0.001, -5.0, -infinity})
        EXPECT_EQ(playhead.state(time), RenderState{EmptyState{}});
    const Playhead late{timelineOf({photo(1, 2, 4, false)}), 0.75};
    EXPECT_EQ(late.state(1.999), RenderState{EmptyState{}});
    EXPECT_EQ(Playhead(twoPlaces, 0.75).state(-0.5), RenderState{EmptyState{}});
}

TEST(PlayheadTest, ShowsACardFromItsStartUpToButNotAtItsEnd) {
    const Playhead playhead{twoPlaces, 0.75};
    EXPECT_EQ(playhead.state(0), RenderState{paris});
    EXPECT_EQ(playhead.state(std::nextafter(3.0, 0.0)), RenderState{paris});
    EXPECT_EQ(playhead.state(3), RenderState{still(inParis, 0)});
    EXPECT_EQ(playhead.state(7), RenderState{rome});
    EXPECT_EQ(playhead.state(10), RenderState{still(inRome, 0)});
}

TEST(PlayheadTest, NeverShowsAPhotoInsideACard) {
    const Playhead playhead{twoPlaces, 0.75};
    for (double time = 0; time < 3; time += 0.01) {
        EXPECT_EQ(playhead.state(time), RenderState{paris});
        EXPECT_EQ(playhead.state(7 + time), RenderState{rome});
    }
}

TEST(PlayheadTest, TheFirstPhotoAndAPhotoAfterACardDoNotDissolve) {
    EXPECT_EQ(Playhead(twoPhotos, 0.75).state(0), RenderState{still(first, 0)});
    const Playhead playhead{twoPlaces, 0.75};
    EXPECT_EQ(playhead.state(3), RenderState{still(inParis, 0)});
    EXPECT_EQ(playhead.state(10), RenderState{still(inRome, 0)});
    EXPECT_EQ(playhead.state(10.5), RenderState{still(inRome, 0.125)});
}

TEST(PlayheadTest, DissolvesHalfwayAtHalfTheCrossfade) {
    const PhotoState expected{.current = first,
                              .progress = 0.90625,
                              .incoming = second,
                              .incomingProgress = 0.09375,
                              .incomingOpacity = 0.5};
    EXPECT_EQ(Playhead(twoPhotos, 0.75).state(3.25 + 0.375), RenderState{expected});
}

TEST(PlayheadTest, DissolvesFromTheIncomingPhotosStartUpToButNotAtTheCrossfadesEnd) {
    const Playhead playhead{twoPhotos, 0.75};
    const PhotoState beginning{.current = first,
                               .progress = 0.8125,
                               .incoming = second,
                               .incomingProgress = 0,
                               .incomingOpacity = 0};
    EXPECT_EQ(playhead.state(3.25), RenderState{beginning});
    EXPECT_EQ(playhead.state(std::nextafter(3.25, 0.0)).index(), RenderState{PhotoState{}}.index());
    EXPECT_EQ(std::get<PhotoState>(playhead.state(std::nextafter(3.25, 0.0))).incoming, std::nullopt);
    EXPECT_EQ(playhead.state(4.0), RenderState{still(second, 0.1875)});
}

TEST(PlayheadTest, ReturnsTheLastPhotoAtItsEndFromTheTotalDurationOn) {
    const Playhead playhead{twoPhotos, 0.75};
    for (const double time : {7.25, 8.0, 1e9, infinity})
        EXPECT_EQ(playhead.state(time), RenderState{still(second, 1)}) << time;
}

TEST(PlayheadTest, NeverDissolvesWithoutACrossfade) {
    for (const double crossfade : {0.0, -1.0}) {
        const Playhead playhead{twoPhotos, crossfade};
        for (double time = 0; time < 8; time += 0.01)
            EXPECT_EQ(std::get<PhotoState>(playhead.state(time)).incoming, std::nullopt);
        EXPECT_EQ(playhead.state(3.25), RenderState{still(second, 0)});
    }
}

TEST(PlayheadTest, UsesTheCrossfadeItIsGivenAlsoWhereTheScheduleHadToShortenIt) {
    // Photos of 1 s overlap by 0.5 s only, and a dissolve takes 0.75 s all the same: the next photo cuts it
    // off.
    const PhotoSegment a = photo(1, 0, 1, false);
    const PhotoSegment b = photo(2, 0.5, 1, true);
    const PhotoSegment c = photo(3, 1.0, 1, true);
    const Playhead playhead{timelineOf({a, b, c}, 2), 0.75};
    EXPECT_EQ(playhead.state(0.75), (RenderState{PhotoState{.current = a,
                                                            .progress = 0.75,
                                                            .incoming = b,
                                                            .incomingProgress = 0.25,
                                                            .incomingOpacity = 0.25 / 0.75}}));
    EXPECT_EQ(playhead.state(1.625), (RenderState{PhotoState{.current = b,
                                                             .progress = 1,
                                                             .incoming = c,
                                                             .incomingProgress = 0.625,
                                                             .incomingOpacity = 0.625 / 0.75}}));
}

TEST(PlayheadTest, CountsAPhotoWithoutDurationAsOverWhenItGoesAndAsBegunWhenItComes) {
    for (const double duration : {0.0, -1.0}) {
        const PhotoSegment a = photo(1, 0, duration, false);
        const PhotoSegment b = photo(2, 1, duration, true);
        const Playhead playhead{timelineOf({a, b}), 0.5};
        EXPECT_EQ(playhead.state(0.5), RenderState{still(a, 0)});
        EXPECT_EQ(
            playhead.state(1.25),
            (RenderState{PhotoState{
                .current = a, .progress = 1, .incoming = b, .incomingProgress = 0, .incomingOpacity = 0.5}}));
        EXPECT_EQ(playhead.state(2), RenderState{still(b, 0)});
    }
}

TEST(PlayheadTest, DoesNotDissolveTheFirstPhotoEvenIfItIsMarkedSo) {
    const PhotoSegment marked = photo(1, 0, 4, true);
    EXPECT_EQ(Playhead(timelineOf({marked}), 0.75).state(0.25), RenderState{still(marked, 0.0625)});
}

TEST(PlayheadTest, PrefersTheFirstOfOverlappingCards) {
    const ChapterSegment outer = chapter("outer", 0, 10);
    const ChapterSegment inner = chapter("inner", 2, 1);
    EXPECT_EQ(Playhead(timelineOf({outer, inner}), 0.75).state(2.5), RenderState{outer});
    EXPECT_EQ(Playhead(timelineOf({inner, outer}), 0.75).state(2.5), RenderState{inner});
    EXPECT_EQ(Playhead(timelineOf({inner, outer}), 0.75).state(3), RenderState{outer});
}

// Against the plain reading: scan the cards, then the photos from the last one.

double clamped(double value) {
    return value < 0 ? 0 : value > 1 ? 1 : value;
}

RenderState scannedState(const SlideshowTimeline& timeline, double crossfade, double t) {
    std::vector<PhotoSegment> photos;
    for (const TimelineItem& item : timeline.items) {
        if (const auto* card = std::get_if<ChapterSegment>(&item)) {
            if (card->start <= t && t < card->start + card->duration)
                return *card;
        } else {
            photos.push_back(std::get<PhotoSegment>(item));
        }
    }
    for (std::size_t i = photos.size(); i-- > 0;) {
        if (!(photos[i].start <= t))
            continue;
        const double local = t - photos[i].start;
        PhotoState state;
        if (i >= 1 && photos[i].crossfadesFromPrevious && local < crossfade) {
            state.current = photos[i - 1];
            state.progress = state.current.duration > 0
                                 ? clamped((t - state.current.start) / state.current.duration)
                                 : 1.0;
            state.incoming = photos[i];
            state.incomingProgress = photos[i].duration > 0 ? clamped(local / photos[i].duration) : 0.0;
            state.incomingOpacity = crossfade > 0 ? clamped(local / crossfade) : 1.0;
        } else {
            state.current = photos[i];
            state.progress = photos[i].duration > 0 ? clamped(local / photos[i].duration) : 0.0;
        }
        return state;
    }
    return EmptyState{};
}

/// Instants at which something may change, and some around them.
std::vector<double> interestingTimes(const SlideshowTimeline& timeline,
                                     ProjectModel::Testing::RandomProject& random) {
    std::vector<double> times{-infinity, -1, 0, infinity, notANumber};
    const auto add = [&](double time) {
        times.insert(times.end(), {time, std::nextafter(time, -infinity), std::nextafter(time, infinity),
                                   time + random.unit(), time + 0.75});
    };
    for (const TimelineItem& item : timeline.items) {
        std::visit(
            [&](const auto& segment) {
                add(segment.start);
                add(segment.start + segment.duration);
            },
            item);
    }
    add(timeline.totalDuration);
    return times;
}

TEST(PlayheadTest, AgreesWithScanningOnBuiltTimelines) {
    ProjectModel::Testing::RandomProject random{71};
    for (int i = 0; i < 300; ++i) {
        const ProjectModel::Project project = random.project(15);
        EffectiveSettings settings;
        settings.photoDuration = random.pick({0.2, 1.0, 4.0, 5.0});
        settings.chapterStyle =
            random.pick({ProjectModel::ChapterStyle::card, ProjectModel::ChapterStyle::overlay});
        const SlideshowTimeline timeline = TimelineBuilder::build(project, settings);
        const Playhead playhead{timeline, settings.crossfade};
        for (const double time : interestingTimes(timeline, random))
            ASSERT_EQ(playhead.state(time), scannedState(timeline, settings.crossfade, time)) << time;
        if (!timeline.items.empty()) {
            // Something is always on screen, and the end is never black.
            for (double time = 0; time <= timeline.totalDuration + 1; time += 0.37)
                ASSERT_FALSE(std::holds_alternative<EmptyState>(playhead.state(time)));
            ASSERT_NEAR(std::get<PhotoState>(playhead.state(timeline.totalDuration)).progress, 1, 1e-9);
        }
    }
}

TEST(PlayheadTest, AgreesWithScanningOnMalformedTimelines) {
    ProjectModel::Testing::RandomProject random{72};
    for (int i = 0; i < 3000; ++i) {
        SlideshowTimeline timeline;
        for (std::size_t j = random.below(9); j > 0; --j) {
            const double start = random.chance(0.04) ? random.pick({infinity, -infinity, notANumber})
                                                     : static_cast<double>(random.below(12));
            const double duration = random.chance(0.04) ? random.pick({infinity, -infinity, notANumber})
                                                        : static_cast<double>(random.below(8)) - 2;
            const auto number = static_cast<std::uint8_t>(j);
            if (random.chance(0.4))
                timeline.items.emplace_back(chapter("card", start, duration));
            else
                timeline.items.emplace_back(photo(number, start, duration, random.chance(0.7)));
        }
        const double crossfade = random.pick({-1.0, 0.0, 0.75, 3.0});
        const Playhead playhead{timeline, crossfade};
        for (const double time : interestingTimes(timeline, random)) {
            const RenderState expected = scannedState(timeline, crossfade, time);
            const RenderState actual = playhead.state(time);
            ASSERT_EQ(actual.index(), expected.index());
            // Numbers that are not numbers are unequal to themselves; compare the identities then.
            if (expected == expected) {
                ASSERT_EQ(actual, expected) << time;
            } else if (const auto* state = std::get_if<PhotoState>(&expected)) {
                ASSERT_EQ(std::get<PhotoState>(actual).current.photoID, state->current.photoID);
            }
        }
    }
}

TEST(PlayheadTest, AnswersFromSeveralThreadsAtOnce) {
    const Playhead playhead{twoPlaces, 0.75};
    std::vector<std::thread> threads;
    std::vector<int> differences(4);
    for (std::size_t i = 0; i < differences.size(); ++i) {
        threads.emplace_back([&playhead, &count = differences[i]] {
            for (double time = -1; time < 18; time += 0.01)
                count += playhead.state(time) != scannedState(twoPlaces, 0.75, time);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(differences, std::vector<int>(4));
}

} // namespace
} // namespace Timeline
