// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <random>

namespace DemoTrip {

/// The same numbers on every machine, unlike the standard distributions.
class Random {
public:
    explicit Random(std::uint32_t seed)
        : m_engine(seed) {}

    /// 0…1, without 1.
    double unit() { return static_cast<double>(m_engine()) / 4294967296.0; }
    double between(double from, double to) { return from + unit() * (to - from); }
    int below(int count) { return static_cast<int>(unit() * count); }
    bool chance(double probability) { return unit() < probability; }

private:
    std::mt19937 m_engine;
};

/// Smooth random values 0…1 over the plane, with a feature about every unit of length.
[[nodiscard]] double smoothNoise(double x, double y, std::uint32_t seed);

/// Several layers of it, each finer and weaker: clouds, rock, the grain of a wall. 0…1, around a half.
[[nodiscard]] double fractalNoise(double x, double y, std::uint32_t seed, int octaves = 5);

} // namespace DemoTrip
