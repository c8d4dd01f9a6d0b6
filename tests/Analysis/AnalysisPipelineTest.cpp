// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FakeClock.h"

#include <Analysis/AnalysisPipeline.h>
#include <Analysis/GeocodeCache.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <random>

namespace Analysis {
namespace {

using Foundation::Image;
using Foundation::Uuid;
using ProjectModel::Coordinate;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;
using Stage = PipelineProgress::Stage;

/// An image that is nothing but a number: one grey.
Image picture(std::uint8_t grey) {
    return {4, 4, std::vector<std::uint8_t>(4 * 4 * 3, grey)};
}

/// A photo's reference is the grey of its picture; "missing" has none.
class FakeImages final : public ImageProviding {
public:
    [[nodiscard]] std::optional<Image> image(const ProjectModel::PhotoRef& ref) override {
        const auto& name = std::get<ProjectModel::LibraryPhotoRef>(ref).localIdentifier;
        {
            const std::lock_guard lock(mutex);
            ++requests[name];
        }
        if (name == "missing")
            return std::nullopt;
        return picture(static_cast<std::uint8_t>(std::stoi(name)));
    }
    std::mutex mutex;
    std::map<std::string, int> requests;
};

/// Greys that differ by less than ten are one scene.
class FakePrinter final : public FeaturePrinting {
public:
    [[nodiscard]] std::optional<std::vector<float>> features(const Image& image) override {
        const float grey = image.pixels.front();
        if (grey == 255)
            throw std::runtime_error("cannot be printed");
        return std::vector<float>{grey / 20};
    }
};

/// The lighter the better.
class FakeScorer final : public ImageQualityScoring {
public:
    [[nodiscard]] ImageQuality quality(const Image& image) override {
        ++calls;
        return {image.pixels.front() / 255.0, false};
    }
    std::atomic<int> calls = 0;
};

class FakeGeocoder final : public ReverseGeocoding {
public:
    std::function<Placemark(const Coordinate&)> answer = [](const Coordinate&) {
        return Placemark{"Rome", "Italy"};
    };
    std::vector<Coordinate> requests;

    [[nodiscard]] Placemark placemark(const Coordinate& coordinate, const std::stop_token&) override {
        requests.push_back(coordinate);
        return answer(coordinate);
    }
};

class AnalysisPipelineTest : public testing::TestWithParam<std::size_t> {
protected:
    [[nodiscard]] static Uuid id(unsigned number) {
        Uuid result;
        result.bytes[14] = static_cast<std::uint8_t>(number >> 8);
        result.bytes[15] = static_cast<std::uint8_t>(number);
        return result;
    }

    PhotoItem& add(const std::string& grey, std::optional<int> seconds = 0,
                   std::optional<Coordinate> coordinate = {}) {
        project.photos.push_back({.id = id(static_cast<unsigned>(project.photos.size())),
                                  .source = ProjectModel::LibraryPhotoRef{grey},
                                  .captureDate = {},
                                  .coordinate = coordinate,
                                  .location = {},
                                  .clusterID = {},
                                  .qualityScore = {},
                                  .caption = {},
                                  .captionProvenance = {},
                                  .isSelected = true,
                                  .selectionProvenance = Provenance::proposed,
                                  .isMissing = false,
                                  .sourceID = {}});
        if (seconds)
            project.photos.back().captureDate =
                Foundation::Instant{std::chrono::seconds(1'700'000'000 + *seconds)};
        return project.photos.back();
    }

    Project analyze(const std::stop_token& stop = {},
                    std::function<void(const PipelineProgress&)> also = {}) {
        reports.clear();
        LocationResolver resolver(cache, geocoder, 0, Clock::Duration(0), clock);
        AnalysisPipeline pipeline(resolver, images, printer, scorer, Uuid::random, {GetParam(), storeBytes});
        return pipeline.analyze(
            project,
            [&](const PipelineProgress& progress) {
                reports.push_back(progress);
                if (also)
                    also(progress);
            },
            stop);
    }

    TemporaryFolder folder;
    GeocodeCache cache{folder / "geocode.json"};
    FakeGeocoder geocoder;
    FakeClock clock;
    FakeImages images;
    FakePrinter printer;
    FakeScorer scorer;
    std::size_t storeBytes = std::size_t{1} << 20;
    Project project;
    std::vector<PipelineProgress> reports;
    const PipelineProgress done{Stage::done, 1, 1};
    const ResolvedLocation inRome{"Rome", "Italy", Provenance::geocoded};
};

TEST_P(AnalysisPipelineTest, LeavesAnEmptyProjectAsItIsAndReportsOnlyThatItIsDone) {
    EXPECT_EQ(analyze(), project);
    EXPECT_EQ(reports, std::vector{done});
}

TEST_P(AnalysisPipelineTest, AsksOnceForTwentyPhotosOfOneCellAndReportsOnce) {
    for (int i = 0; i < 20; ++i)
        add("0", i * 10'000, Coordinate{41.8902 + i * 1e-4, 12.4922});
    const Project result = analyze();
    EXPECT_EQ(geocoder.requests.size(), 1U);
    EXPECT_EQ(std::count_if(reports.begin(), reports.end(),
                            [](const auto& r) { return r.stage == Stage::geocoding; }),
              1);
    EXPECT_EQ(reports.front(), (PipelineProgress{Stage::geocoding, 20, 20}));
    for (const PhotoItem& photo : result.photos)
        EXPECT_EQ(photo.location, inRome);
}

TEST_P(AnalysisPipelineTest, AsksForTheFirstPhotosCoordinateOfEachCellInProjectOrder) {
    add("0", 0, Coordinate{41.891, 12.491});
    add("0", 10'000, Coordinate{48.858, 2.294});
    add("0", 20'000, Coordinate{41.889, 12.489});
    (void)analyze();
    EXPECT_EQ(geocoder.requests, (std::vector<Coordinate>{{41.891, 12.491}, {48.858, 2.294}}));
    EXPECT_EQ(reports[0], (PipelineProgress{Stage::geocoding, 2, 3}));
    EXPECT_EQ(reports[1], (PipelineProgress{Stage::geocoding, 3, 3}));
}

TEST_P(AnalysisPipelineTest, AdvancesPastCellsThatCannotBeNamed) {
    add("0", 0, Coordinate{1, 1});
    add("0", 0, Coordinate{std::numeric_limits<double>::quiet_NaN(), 0});
    add("0", 0, Coordinate{91, 0});
    geocoder.answer = [](const Coordinate&) -> Placemark { throw GeocodingError("no network"); };
    const Project result = analyze();
    EXPECT_EQ(geocoder.requests.size(), 1U);
    EXPECT_EQ(reports[2], (PipelineProgress{Stage::geocoding, 3, 3}));
    for (const PhotoItem& photo : result.photos)
        EXPECT_FALSE(photo.location);
}

TEST_P(AnalysisPipelineTest, KeepsWhatTheUserSaid) {
    const ResolvedLocation byUser{"Grandma's", std::nullopt, Provenance::user};
    add("50", 0, Coordinate{41.89, 12.49}).location = byUser;
    PhotoItem& chosen = add("45", 1);
    chosen.selectionProvenance = Provenance::user;
    const Project result = analyze();
    EXPECT_EQ(result.photos[0].location, byUser);
    EXPECT_TRUE(result.photos[1].isSelected);
    EXPECT_TRUE(result.photos[1].clusterID);
    EXPECT_TRUE(result.photos[1].qualityScore);
}

TEST_P(AnalysisPipelineTest, InfersPlacesFromWhatWasJustLocated) {
    add("0", 0, Coordinate{41.89, 12.49});
    add("50", 3600);
    add("100", 7200, Coordinate{41.89, 12.49});
    EXPECT_EQ(analyze().photos[1].location, (ResolvedLocation{"Rome", "Italy", Provenance::inferred}));
}

TEST_P(AnalysisPipelineTest, KeepsTheBestOfEachGroupAndScoresItsMembersOnly) {
    add("100", 0);
    add("105", 10);
    add("102", 20);
    add("200", 30);
    const Project result = analyze();
    EXPECT_FALSE(result.photos[0].isSelected);
    EXPECT_TRUE(result.photos[1].isSelected);
    EXPECT_FALSE(result.photos[2].isSelected);
    EXPECT_EQ(result.photos[0].clusterID, result.photos[2].clusterID);
    EXPECT_DOUBLE_EQ(*result.photos[1].qualityScore, 0.5 * 105 / 255);
    EXPECT_EQ(scorer.calls, 3);
}

TEST_P(AnalysisPipelineTest, LeavesAPhotoThatStandsAloneUntouched) {
    PhotoItem& alone = add("100", 0);
    alone.isSelected = false;
    alone.qualityScore = 0.25;
    add("200", 10);
    EXPECT_EQ(analyze().photos[0], project.photos[0]);
    EXPECT_EQ(scorer.calls, 0);
}

TEST_P(AnalysisPipelineTest, NeitherClustersNorScoresPhotosWithoutImageOrPrint) {
    add("missing", 0);
    add("missing", 1);
    add("255", 2);
    add("255", 3);
    EXPECT_EQ(analyze(), project);
}

TEST_P(AnalysisPipelineTest, ReportsEveryPhotoInOrderWhateverTheNumberOfWorkers) {
    for (int i = 0; i < 30; ++i)
        add(i % 2 ? "100" : "200", i * 2);
    (void)analyze();
    std::vector<PipelineProgress> expected;
    for (int i = 1; i <= 30; ++i)
        expected.push_back({Stage::clustering, i, 30});
    for (int i = 1; i <= 30; ++i)
        expected.push_back({Stage::scoring, i, 30});
    expected.push_back(done);
    EXPECT_EQ(reports, expected);
}

TEST_P(AnalysisPipelineTest, ScoresFormerMembersAgainOnASecondRunAndLeavesThemAsTheyAre) {
    PhotoItem& former = add("10", 0);
    former.clusterID = id(999);
    former.qualityScore = 0.5;
    former.isSelected = false;
    add("100", 10);
    add("101", 20);
    const Project result = analyze();
    EXPECT_EQ(scorer.calls, 3);
    EXPECT_EQ(result.photos[0], project.photos[0]);

    // New identifiers on every run: all members are judged again.
    project = result;
    const Project second = analyze();
    EXPECT_EQ(scorer.calls, 6);
    EXPECT_NE(second.photos[1].clusterID, result.photos[1].clusterID);
    EXPECT_EQ(second.photos[1].isSelected, result.photos[1].isSelected);
}

TEST_P(AnalysisPipelineTest, DecodesEachPhotoOnceWhenThereIsRoom) {
    for (int i = 0; i < 20; ++i)
        add(std::to_string(100 + i % 5), i);
    (void)analyze();
    for (const auto& [name, count] : images.requests)
        EXPECT_EQ(count, 4) << name;
}

TEST_P(AnalysisPipelineTest, DecodesTheShotsOfBurstsOnceWithoutAnyRoom) {
    storeBytes = 0;
    for (int i = 0; i < 100; ++i)
        add(std::to_string((i / 5) % 4 * 60 + 1), i * 30);
    (void)analyze();
    for (const auto& [name, count] : images.requests)
        EXPECT_EQ(count, 25) << name;
}

TEST_P(AnalysisPipelineTest, ComesToTheSameResultWithoutRoomForImages) {
    // The twins of each photo come long after it.
    for (int i = 0; i < 60; ++i)
        add(std::to_string(i % 30 * 8), i);
    project.usesManualOrder = true;
    const Project roomy = analyze();
    storeBytes = 0;
    const Project tight = analyze();
    for (std::size_t i = 0; i < project.photos.size(); ++i) {
        EXPECT_EQ(roomy.photos[i].isSelected, tight.photos[i].isSelected);
        EXPECT_EQ(roomy.photos[i].qualityScore, tight.photos[i].qualityScore);
    }
}

TEST_P(AnalysisPipelineTest, KeepsThePlacesResolvedSoFarWhenStoppedWhileLocating) {
    std::stop_source stop;
    for (int i = 0; i < 5; ++i)
        add("100", i, Coordinate{40.0 + i, 12});
    geocoder.answer = [&](const Coordinate& coordinate) {
        if (coordinate.latitude == 42)
            stop.request_stop();
        return Placemark{"Rome", "Italy"};
    };
    const Project result = analyze(stop.get_token());
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(result.photos[i].location.has_value(), i <= 2);
        EXPECT_FALSE(result.photos[i].clusterID);
        EXPECT_FALSE(result.photos[i].qualityScore);
    }
    EXPECT_TRUE(images.requests.empty());
}

TEST_P(AnalysisPipelineTest, StopsBeforeTheNextPhotoAndReportsNothingMore) {
    for (const Stage stage : {Stage::clustering, Stage::scoring}) {
        project.photos.clear();
        for (int i = 0; i < 40; ++i)
            add("100", i);
        std::stop_source stop;
        const Project result = analyze(stop.get_token(), [&](const PipelineProgress& progress) {
            if (progress.stage == stage && progress.completed == 7)
                stop.request_stop();
        });
        EXPECT_EQ(reports.back(), (PipelineProgress{stage, 7, 40}));
        EXPECT_EQ(result, project);
    }
}

TEST_P(AnalysisPipelineTest, SurvivesBeingStoppedAtAnyMoment) {
    for (int i = 0; i < 12; ++i)
        add("100", i, Coordinate{static_cast<double>(i), 0});
    const int all = 12 * 3 + 1;
    for (int moment = 1; moment <= all; ++moment) {
        std::stop_source stop;
        int seen = 0;
        const Project result = analyze(stop.get_token(), [&](const PipelineProgress&) {
            if (++seen == moment)
                stop.request_stop();
        });
        EXPECT_EQ(seen, moment);
        EXPECT_EQ(result.photos.size(), project.photos.size());
    }
}

INSTANTIATE_TEST_SUITE_P(Workers, AnalysisPipelineTest, testing::Values(1, 2, 5),
                         [](const auto& info) { return std::to_string(info.param); });

} // namespace
} // namespace Analysis
