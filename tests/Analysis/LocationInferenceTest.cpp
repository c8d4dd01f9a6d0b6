// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/LocationInference.h>

#include <gtest/gtest.h>

#include <chrono>

namespace Analysis {
namespace {

using Foundation::Instant;
using LocationInference::Neighbour;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;

/// A time of the fifth of May 2024.
Instant at(int hour, int minute = 0, int second = 0) {
    return *Foundation::makeInstant(2024, 5, 5, 0, 0, 0) + std::chrono::hours(hour) +
           std::chrono::minutes(minute) + std::chrono::seconds(second);
}

ResolvedLocation place(std::optional<std::string> city, std::optional<std::string> country = "Italy") {
    return {std::move(city), std::move(country), Provenance::geocoded};
}

std::optional<ResolvedLocation> inferredAt(Instant time, const Neighbour& previous, const Neighbour& next) {
    return LocationInference::inferred(time, previous, next, LocationInference::maxGapSeconds);
}

PhotoItem photo(std::uint8_t number, std::optional<Instant> date, std::optional<ResolvedLocation> location) {
    Foundation::Uuid id;
    id.bytes[15] = number;
    return {.id = id,
            .source = ProjectModel::LibraryPhotoRef{"x"},
            .captureDate = date,
            .coordinate = {},
            .location = std::move(location),
            .clusterID = {},
            .qualityScore = {},
            .caption = {},
            .captionProvenance = {},
            .isSelected = true,
            .selectionProvenance = Provenance::proposed,
            .isMissing = false,
            .sourceID = {}};
}

Project project(std::vector<PhotoItem> photos) {
    Project result;
    result.photos = std::move(photos);
    return result;
}

TEST(LocationInferenceTest, TakesTheCityOfBothNeighbours) {
    EXPECT_EQ(inferredAt(at(12), {at(9), place("Rome")}, {at(17, 30), place("Rome")}),
              (ResolvedLocation{"Rome", "Italy", Provenance::inferred}));
}

TEST(LocationInferenceTest, IncludesExactlySixHoursAndNotASecondMore) {
    EXPECT_TRUE(inferredAt(at(12), {at(9), place("Rome")}, {at(18), place("Rome")}));
    EXPECT_FALSE(inferredAt(at(12), {at(9), place("Rome")}, {at(18, 0, 1), place("Rome")}));
    EXPECT_TRUE(inferredAt(at(12), {at(6), place("Rome")}, {at(13), place("Rome")}));
    EXPECT_FALSE(inferredAt(at(12), {at(5, 59, 59), place("Rome")}, {at(13), place("Rome")}));
}

TEST(LocationInferenceTest, TakesTheEarlierNeighboursCountryWhereTheyDiffer) {
    EXPECT_EQ(inferredAt(at(12), {at(11), place("Rome", "Italy")}, {at(13), place("Rome", "Spain")})->country,
              "Italy");
    EXPECT_EQ(inferredAt(at(12), {at(11), place("Rome", std::nullopt)}, {at(13), place("Rome")})->country,
              std::nullopt);
}

TEST(LocationInferenceTest, InfersNothingFromCitiesThatDifferInCaseOnly) {
    EXPECT_FALSE(inferredAt(at(12), {at(11), place("Rome")}, {at(13), place("rome")}));
}

TEST(LocationInferenceTest, InfersNothingFromNeighboursWithoutACity) {
    EXPECT_FALSE(inferredAt(at(12), {at(11), place(std::nullopt)}, {at(13), place(std::nullopt)}));
    EXPECT_FALSE(inferredAt(at(12), {at(11), place("Rome")}, {at(13), place(std::nullopt)}));
}

TEST(LocationInferenceTest, InfersNothingWithoutADateOrWithOneNeighbour) {
    const Neighbour rome{at(11), place("Rome")};
    EXPECT_FALSE(LocationInference::inferred(std::nullopt, rome, rome, 21'600));
    EXPECT_FALSE(LocationInference::inferred(at(11), std::nullopt, rome, 21'600));
    EXPECT_FALSE(LocationInference::inferred(at(11), rome, std::nullopt, 21'600));
}

TEST(LocationInferenceTest, GivesThreePhotosInARowTheSameNeighbours) {
    Project p = project({photo(1, at(9), place("Paris", "France")), photo(2, at(10), std::nullopt),
                         photo(3, at(11), std::nullopt), photo(4, at(12), std::nullopt),
                         photo(5, at(13), place("Paris", "France"))});
    LocationInference::infer(p);
    for (const std::size_t i : {1U, 2U, 3U})
        EXPECT_EQ(p.photos[i].location, (ResolvedLocation{"Paris", "France", Provenance::inferred}));
}

TEST(LocationInferenceTest, DoesNotChainFromOneInferredPhotoToTheNext) {
    // The second could be inferred from 9:00 and 15:00; the third is more than six hours from 9:00.
    Project p = project({photo(1, at(9), place("Paris")), photo(2, at(14), std::nullopt),
                         photo(3, at(16), std::nullopt), photo(4, at(17), place("Paris"))});
    LocationInference::infer(p);
    EXPECT_TRUE(p.photos[1].location);
    EXPECT_FALSE(p.photos[2].location);
}

TEST(LocationInferenceTest, LeavesUndatedPhotosOutOnBothSides) {
    Project p = project({photo(1, std::nullopt, place("Rome")), photo(2, std::nullopt, std::nullopt),
                         photo(3, at(9), std::nullopt), photo(4, at(10), place("Rome"))});
    LocationInference::infer(p);
    EXPECT_FALSE(p.photos[1].location);
    EXPECT_FALSE(p.photos[2].location);
}

TEST(LocationInferenceTest, InfersNothingForTheFirstAndTheLastPhoto) {
    Project p = project({photo(1, at(8), std::nullopt), photo(2, at(9), place("Rome")),
                         photo(3, at(10), place("Rome")), photo(4, at(11), std::nullopt)});
    LocationInference::infer(p);
    EXPECT_FALSE(p.photos[0].location);
    EXPECT_FALSE(p.photos[3].location);
}

TEST(LocationInferenceTest, LooksForNeighboursInCaptureOrderNotInProjectOrder) {
    Project p = project(
        {photo(1, at(13), place("Oslo")), photo(2, at(12), std::nullopt), photo(3, at(11), place("Oslo"))});
    LocationInference::infer(p);
    EXPECT_EQ(p.photos[1].location->city, "Oslo");
}

TEST(LocationInferenceTest, LeavesWhatPhotosHaveAlready) {
    Project p = project({photo(1, at(9), place("Rome")), photo(2, at(10), place(std::nullopt, std::nullopt)),
                         photo(3, at(11), place("Rome"))});
    const Project before = p;
    LocationInference::infer(p);
    EXPECT_EQ(p, before);
}

} // namespace
} // namespace Analysis
