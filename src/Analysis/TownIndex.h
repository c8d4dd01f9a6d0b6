// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GazetteerFormat.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

namespace Analysis {

/// A unit vector from the Earth's centre.
using UnitVector = std::array<float, 3>;

inline constexpr double earthRadiusKm = 6371.0088;

[[nodiscard]] UnitVector unitVector(double latitude, double longitude);

/// Along the surface of a sphere of the Earth's size.
[[nodiscard]] double distanceKm(const UnitVector& a, const UnitVector& b);

/// Finds towns near a point, wherever on the globe: neither poles nor the date line are special. Views memory
/// that it does not own. Any thread.
class TownIndex {
public:
    TownIndex() = default;
    /// In the order of `GazetteerFormat::GazetteerSection::Towns`.
    explicit TownIndex(std::span<const GazetteerFormat::Town> towns)
        : m_towns(towns) {}

    /// Calls `visit(town, kilometres)` for every town within `maxKm`, in no particular order.
    template <typename Visit>
    void forEachWithin(const UnitVector& centre, double maxKm, Visit&& visit) const {
        search(0, m_towns.size(), 0, centre, chord(maxKm), visit);
    }

private:
    /// The straight line through the globe that spans as many kilometres of its surface.
    [[nodiscard]] static float chord(double km);

    /// The arc over a straight line through the globe. Most are short, and two terms of the series tell them
    /// to the metre.
    [[nodiscard]] static double arcKm(float chord) {
        constexpr double shortChord = 0.1;
        const double straight = double{chord};
        return earthRadiusKm * (straight < shortChord ? straight * (1 + straight * straight / 24)
                                                      : 2 * std::asin(std::min(1.0, straight / 2)));
    }

    template <typename Visit>
    void search(std::size_t first, std::size_t last, std::size_t axis, const UnitVector& centre, float reach,
                Visit& visit) const {
        if (first >= last)
            return;
        const std::size_t middle = first + (last - first) / 2;
        const GazetteerFormat::Town& town = m_towns[middle];
        const float side = centre[axis] - town.position[axis];
        const std::size_t nextAxis = (axis + 1) % 3;
        if (side <= reach)
            search(first, middle, nextAxis, centre, reach, visit);
        if (side >= -reach)
            search(middle + 1, last, nextAxis, centre, reach, visit);

        float squared = 0;
        for (std::size_t i = 0; i < 3; ++i)
            squared += (centre[i] - town.position[i]) * (centre[i] - town.position[i]);
        if (squared <= reach * reach)
            visit(town, arcKm(std::sqrt(squared)));
    }

    std::span<const GazetteerFormat::Town> m_towns;
};

} // namespace Analysis
