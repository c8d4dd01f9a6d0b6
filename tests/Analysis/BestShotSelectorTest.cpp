// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/BestShotSelector.h>

#include <gtest/gtest.h>

namespace Analysis {
namespace {

using Foundation::Uuid;

const Uuid small = *Uuid::parse("0A000000-0000-0000-0000-000000000000");
const Uuid middle = *Uuid::parse("A0000000-0000-0000-0000-000000000000");
const Uuid great = *Uuid::parse("F0000000-0000-0000-0000-000000000000");
const Uuid cluster = *Uuid::parse("11111111-1111-1111-1111-111111111111");
const Uuid otherCluster = *Uuid::parse("22222222-2222-2222-2222-222222222222");

TEST(BestShotSelectorTest, ScoresTheBestPhotoAsOne) {
    EXPECT_DOUBLE_EQ(BestShotSelector::score({1, 1, true}), 1.0);
}

TEST(BestShotSelectorTest, ScoresAMiddlingPhotoWithoutFacesAsFourTenths) {
    EXPECT_DOUBLE_EQ(BestShotSelector::score({0.5, 0.5, false}), 0.4);
}

TEST(BestShotSelectorTest, ReachesHalfTheSharpnessAtAVarianceOfAThousand) {
    EXPECT_DOUBLE_EQ(BestShotSelector::sharpness(0), 0);
    EXPECT_DOUBLE_EQ(BestShotSelector::sharpness(1000), 0.5);
    EXPECT_DOUBLE_EQ(BestShotSelector::sharpness(3000), 0.75);
}

TEST(BestShotSelectorTest, CountsAnAbsentVarianceAsNoSharpness) {
    EXPECT_DOUBLE_EQ(BestShotSelector::sharpness(std::nullopt), 0);
}

TEST(BestShotSelectorTest, KeepsTheHighestScoreAndDropsTheRest) {
    EXPECT_EQ(BestShotSelector::selection({{small, cluster}, {middle, cluster}, {great, cluster}},
                                          {{small, 0.9}, {middle, 0.3}, {great, 0.8}}),
              (ClusterSelection{{small}, {middle, great}}));
}

TEST(BestShotSelectorTest, KeepsTheGreaterIdentifierAmongEqualScores) {
    EXPECT_EQ(BestShotSelector::selection({{great, cluster}, {small, cluster}, {middle, cluster}},
                                          {{small, 0.5}, {middle, 0.5}, {great, 0.5}}),
              (ClusterSelection{{great}, {small, middle}}));
    EXPECT_EQ(BestShotSelector::selection({{middle, cluster}, {small, cluster}}, {}),
              (ClusterSelection{{middle}, {small}}));
}

TEST(BestShotSelectorTest, LetsAMemberWithoutAScoreLoseToAnyPositiveOne) {
    EXPECT_EQ(BestShotSelector::selection({{great, cluster}, {small, cluster}}, {{small, 1e-9}}),
              (ClusterSelection{{small}, {great}}));
}

TEST(BestShotSelectorTest, KeepsOneOfEachCluster) {
    const Uuid fourth = *Uuid::parse("44444444-4444-4444-4444-444444444444");
    EXPECT_EQ(BestShotSelector::selection(
                  {{small, cluster}, {middle, cluster}, {great, otherCluster}, {fourth, otherCluster}},
                  {{small, 0.2}, {middle, 0.1}, {great, 0.1}, {fourth, 0.2}}),
              (ClusterSelection{{small, fourth}, {middle, great}}));
}

TEST(BestShotSelectorTest, SelectsNothingWithoutClusters) {
    EXPECT_EQ(BestShotSelector::selection({}, {{small, 1}}), ClusterSelection{});
}

} // namespace
} // namespace Analysis
