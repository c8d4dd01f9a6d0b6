// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/DuplicateClusterer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <set>

namespace Analysis {
namespace {

using Foundation::Instant;
using Foundation::Uuid;

constexpr double threshold = 0.5;
constexpr double timeWindow = 600;

Uuid numbered(unsigned number) {
    Uuid id;
    id.bytes[14] = static_cast<std::uint8_t>(number >> 8);
    id.bytes[15] = static_cast<std::uint8_t>(number);
    return id;
}

Instant at(int seconds) {
    return Instant{std::chrono::seconds(1'700'000'000 + seconds)};
}

ClusterItem item(unsigned number, std::optional<int> seconds, std::vector<float> features) {
    return {numbered(number), seconds ? std::optional(at(*seconds)) : std::nullopt, std::move(features)};
}

auto clustered(const std::vector<ClusterItem>& items) {
    return DuplicateClusterer::cluster(items, threshold, timeWindow);
}

/// The groups of positions, without their random identifiers.
std::set<std::set<std::size_t>> groups(const std::vector<ClusterItem>& items,
                                       const std::unordered_map<Uuid, Uuid>& clusters) {
    std::map<Uuid, std::set<std::size_t>> byCluster;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (const auto found = clusters.find(items[i].id); found != clusters.end())
            byCluster[found->second].insert(i);
    }
    std::set<std::set<std::size_t>> result;
    for (const auto& [id, members] : byCluster)
        result.insert(members);
    return result;
}

/// The rule as it reads, every item against every cluster.
std::set<std::set<std::size_t>> naiveGroups(const std::vector<ClusterItem>& items, double limit,
                                            double window) {
    std::vector<std::size_t> order(items.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const auto key = [&](std::size_t i) {
            return items[i].captureDate ? items[i].captureDate->time_since_epoch().count()
                                        : std::numeric_limits<std::int64_t>::min();
        };
        return key(a) < key(b);
    });
    std::vector<std::vector<std::size_t>> clusters;
    for (const std::size_t i : order) {
        double best = limit;
        std::vector<std::size_t>* bestCluster = nullptr;
        for (auto& cluster : clusters) {
            const ClusterItem& last = items[cluster.back()];
            if (items[i].captureDate && last.captureDate &&
                std::abs(static_cast<double>((*items[i].captureDate - *last.captureDate).count())) > window)
                continue;
            double d = std::numeric_limits<double>::max();
            if (!items[i].features.empty() && items[i].features.size() == last.features.size()) {
                double sum = 0;
                for (std::size_t k = 0; k < last.features.size(); ++k) {
                    const double difference = items[i].features[k] - last.features[k];
                    sum += difference * difference;
                }
                d = std::sqrt(sum);
            }
            if (d < best) {
                best = d;
                bestCluster = &cluster;
            }
        }
        if (bestCluster)
            bestCluster->push_back(i);
        else
            clusters.push_back({i});
    }
    std::set<std::set<std::size_t>> result;
    for (const auto& cluster : clusters) {
        if (cluster.size() > 1)
            result.insert({cluster.begin(), cluster.end()});
    }
    return result;
}

TEST(DuplicateClustererTest, GroupsThreeShotsOfOneSceneUnderOneNewIdentifier) {
    const std::vector<ClusterItem> items{item(1, 0, {0, 0}), item(2, 20, {0.2F, 0}),
                                         item(3, 40, {0.2F, 0.2F})};
    const auto clusters = clustered(items);
    ASSERT_EQ(clusters.size(), 3U);
    EXPECT_EQ(clusters.at(numbered(1)), clusters.at(numbered(2)));
    EXPECT_EQ(clusters.at(numbered(1)), clusters.at(numbered(3)));
    EXPECT_NE(clusters.at(numbered(1)), clustered(items).at(numbered(1)));
}

TEST(DuplicateClustererTest, KeepsTwinsElevenMinutesApartSeparate) {
    EXPECT_TRUE(clustered({item(1, 0, {1, 0}), item(2, 660, {1, 0})}).empty());
}

TEST(DuplicateClustererTest, IncludesTheLastSecondOfTheWindow) {
    EXPECT_EQ(clustered({item(1, 0, {1, 0}), item(2, 600, {1, 0})}).size(), 2U);
    EXPECT_TRUE(clustered({item(1, 0, {1, 0}), item(2, 601, {1, 0})}).empty());
}

TEST(DuplicateClustererTest, DoesNotTestTheTimeOfAnUndatedPhoto) {
    EXPECT_EQ(clustered({item(1, 1'000'000, {1, 0}), item(2, std::nullopt, {1, 0.1F})}).size(), 2U);
}

TEST(DuplicateClustererTest, LeavesOutAnItemAtExactlyTheThreshold) {
    EXPECT_TRUE(clustered({item(1, 0, {0, 0}), item(2, 1, {0.5F, 0})}).empty());
    EXPECT_EQ(clustered({item(1, 0, {0, 0}), item(2, 1, {0.4999F, 0})}).size(), 2U);
}

TEST(DuplicateClustererTest, JoinsTheNearerOfTwoClusters) {
    const std::vector<ClusterItem> items{item(1, 0, {0, 0}), item(2, 1, {0.6F, 0}), item(3, 2, {0.4F, 0})};
    EXPECT_EQ(groups(items, clustered(items)), (std::set<std::set<std::size_t>>{{1, 2}}));
}

TEST(DuplicateClustererTest, JoinsTheOlderOfTwoClustersAtTheSameDistance) {
    const std::vector<ClusterItem> items{item(1, 0, {0, 0}), item(2, 1, {0.5F, 0}), item(3, 2, {0.25F, 0})};
    EXPECT_EQ(groups(items, clustered(items)), (std::set<std::set<std::size_t>>{{0, 2}}));
}

TEST(DuplicateClustererTest, LeavesAnItemWithoutFeaturesAlone) {
    EXPECT_TRUE(clustered({item(1, 0, {}), item(2, 1, {}), item(3, 2, {1})}).empty());
    EXPECT_TRUE(DuplicateClusterer::cluster(std::vector{item(1, 0, {}), item(2, 1, {})},
                                            std::numeric_limits<double>::max(), timeWindow)
                    .empty());
}

TEST(DuplicateClustererTest, LeavesItemsWithFeaturesOfDifferentLengthsApart) {
    EXPECT_TRUE(clustered({item(1, 0, {0, 0}), item(2, 1, {0, 0, 0})}).empty());
}

TEST(DuplicateClustererTest, YieldsNothingForNothing) {
    EXPECT_TRUE(clustered({}).empty());
}

TEST(DuplicateClustererTest, MatchesNothingWithFeaturesThatAreNotNumbers) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(clustered({item(1, 0, {nan, 0}), item(2, 1, {nan, 0})}).empty());
}

TEST(DuplicateClustererTest, ComparesWithTheLastMemberOnlySoThatABurstMayDrift) {
    std::vector<ClusterItem> items;
    for (unsigned i = 0; i < 20; ++i)
        items.push_back(item(i, static_cast<int>(i) * 500, {0.4F * static_cast<float>(i), 0}));
    EXPECT_EQ(groups(items, clustered(items)).size(), 1U);
    EXPECT_EQ(clustered(items).size(), 20U);
}

TEST(DuplicateClustererTest, KeepsAClusterThatEndsInAnUndatedPhotoOpen) {
    const std::vector<ClusterItem> items{item(1, std::nullopt, {0, 0}), item(2, std::nullopt, {5, 5}),
                                         item(3, 0, {9, 9}), item(4, 10'000'000, {5, 5})};
    EXPECT_EQ(groups(items, clustered(items)), (std::set<std::set<std::size_t>>{{1, 3}}));
}

TEST(DuplicateClustererTest, TakesItemsInCaptureOrderWhateverOrderTheyCameIn) {
    const std::vector<ClusterItem> items{item(1, 40, {0.8F, 0}), item(2, 0, {0, 0}), item(3, 20, {0.4F, 0})};
    EXPECT_EQ(groups(items, clustered(items)), (std::set<std::set<std::size_t>>{{0, 1, 2}}));
}

TEST(DuplicateClustererTest, MeasuresLongVectorsLikeShortOnes) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(-1, 1);
    for (const std::size_t length : {1UL, 7UL, 8UL, 9UL, 127UL, 128UL, 129UL, 2048UL, 2051UL}) {
        std::vector<float> a(length);
        std::vector<float> b(length);
        std::generate(a.begin(), a.end(), [&] { return value(random); });
        std::generate(b.begin(), b.end(), [&] { return value(random); });
        double sum = 0;
        for (std::size_t i = 0; i < length; ++i)
            sum += std::pow(static_cast<double>(a[i] - b[i]), 2);
        EXPECT_NEAR(DuplicateClusterer::distance(a, b), std::sqrt(sum), 1e-9) << length;
    }
    EXPECT_EQ(DuplicateClusterer::distance({}, {}), std::numeric_limits<double>::max());
}

TEST(DuplicateClustererTest, AgreesWithTheNaiveRuleOnRandomProjects) {
    std::mt19937 random(20);
    const auto upTo = [&](int limit) { return std::uniform_int_distribution<int>(0, limit)(random); };
    for (int round = 0; round < 3000; ++round) {
        std::vector<ClusterItem> items;
        const int count = upTo(30);
        const int span = upTo(1) ? 3000 : 30'000;
        for (int i = 0; i < count; ++i) {
            std::vector<float> features;
            if (upTo(15) > 0) {
                // Multiples of an eighth make ties and exact thresholds common.
                for (int k = upTo(30) == 0 ? 1 : 0; k < 3; ++k)
                    features.push_back(static_cast<float>(upTo(6)) / 8);
            }
            items.push_back(item(static_cast<unsigned>(i), upTo(4) ? std::optional(upTo(span)) : std::nullopt,
                                 std::move(features)));
        }
        const double limit = upTo(1) ? 0.5 : 0.25;
        const double window = std::array{600.0, 0.0, 60.0, -1.0}[static_cast<std::size_t>(upTo(3))];
        ASSERT_EQ(groups(items, DuplicateClusterer::cluster(items, limit, window)),
                  naiveGroups(items, limit, window))
            << "round " << round;
    }
}

} // namespace
} // namespace Analysis
