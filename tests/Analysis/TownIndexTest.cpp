// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/TownIndex.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

namespace Analysis {
namespace {

using GazetteerFormat::Town;

void arrange(std::vector<Town>& towns, std::size_t first, std::size_t last, std::size_t axis) {
    if (last - first < 2)
        return;
    const auto at = [&](std::size_t i) { return towns.begin() + static_cast<std::ptrdiff_t>(i); };
    const std::size_t middle = first + (last - first) / 2;
    std::nth_element(at(first), at(middle), at(last),
                     [&](const Town& a, const Town& b) { return a.position[axis] < b.position[axis]; });
    arrange(towns, first, middle, (axis + 1) % 3);
    arrange(towns, middle + 1, last, (axis + 1) % 3);
}

TEST(TownIndexTest, MeasuresAlongTheSurface) {
    EXPECT_NEAR(distanceKm(unitVector(52.5200, 13.4050), unitVector(48.1374, 11.5755)), 504.4, 1);
    EXPECT_NEAR(distanceKm(unitVector(90, 0), unitVector(-90, 0)), 20015, 1);
    EXPECT_NEAR(distanceKm(unitVector(0, 179.9), unitVector(0, -179.9)), 22.24, 0.01);
}

TEST(TownIndexTest, FindsExactlyTheTownsWithinReach) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> latitude(-90, 90);
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::vector<Town> towns(3000);
    for (std::size_t i = 0; i < towns.size(); ++i) {
        towns[i].position = unitVector(latitude(random), longitude(random));
        towns[i].population = static_cast<std::uint32_t>(i);
    }
    arrange(towns, 0, towns.size(), 0);
    const TownIndex index(towns);
    for (int round = 0; round < 300; ++round) {
        // Poles and the date line among the centres.
        const UnitVector centre =
            unitVector(round % 10 == 0 ? 90.0 : latitude(random), round % 7 == 0 ? 180.0 : longitude(random));
        const double reach = round % 3 == 0 ? 2000 : 400;
        std::set<std::uint32_t> expected;
        for (const Town& town : towns) {
            if (distanceKm(centre, town.position) < reach - 0.01)
                expected.insert(town.population);
        }
        std::set<std::uint32_t> found;
        index.forEachWithin(centre, reach, [&](const Town& town, double km) {
            EXPECT_LE(km, reach + 0.01);
            if (km < reach - 0.01)
                found.insert(town.population);
        });
        ASSERT_EQ(found, expected);
    }
}

TEST(TownIndexTest, FindsNothingAmongNoTowns) {
    TownIndex().forEachWithin(unitVector(0, 0), 20'000, [](const Town&, double) { FAIL(); });
}

} // namespace
} // namespace Analysis
