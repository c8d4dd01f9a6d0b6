// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/TownIndex.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Analysis {

UnitVector unitVector(double latitude, double longitude) {
    const double phi = latitude * std::numbers::pi / 180;
    const double lambda = longitude * std::numbers::pi / 180;
    return {static_cast<float>(std::cos(phi) * std::cos(lambda)),
            static_cast<float>(std::cos(phi) * std::sin(lambda)), static_cast<float>(std::sin(phi))};
}

double distanceKm(const UnitVector& a, const UnitVector& b) {
    double squared = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double difference = double{a[i]} - double{b[i]};
        squared += difference * difference;
    }
    return 2 * earthRadiusKm * std::asin(std::min(1.0, std::sqrt(squared) / 2));
}

float TownIndex::chord(double km) {
    return static_cast<float>(2 * std::sin(std::min(km / (2 * earthRadiusKm), std::numbers::pi / 2)));
}

} // namespace Analysis
