// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Noise.h"

#include <cmath>

namespace DemoTrip {

namespace {

double latticeValue(std::int32_t x, std::int32_t y, std::uint32_t seed) {
    std::uint32_t h = seed * 0x9E3779B9U + static_cast<std::uint32_t>(x) * 0x85EBCA6BU +
                      static_cast<std::uint32_t>(y) * 0xC2B2AE35U;
    h = (h ^ (h >> 15)) * 0x2C1B3C6DU;
    h = (h ^ (h >> 12)) * 0x297A2D39U;
    return (h ^ (h >> 15)) / 4294967296.0;
}

double eased(double t) {
    return t * t * (3 - 2 * t);
}

double mixed(double a, double b, double t) {
    return a + (b - a) * t;
}

} // namespace

double smoothNoise(double x, double y, std::uint32_t seed) {
    const auto left = static_cast<std::int32_t>(std::floor(x));
    const auto top = static_cast<std::int32_t>(std::floor(y));
    const double u = eased(x - left);
    const double v = eased(y - top);
    return mixed(mixed(latticeValue(left, top, seed), latticeValue(left + 1, top, seed), u),
                 mixed(latticeValue(left, top + 1, seed), latticeValue(left + 1, top + 1, seed), u), v);
}

double fractalNoise(double x, double y, std::uint32_t seed, int octaves) {
    double sum = 0;
    double weight = 1;
    double total = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * smoothNoise(x, y, seed + static_cast<std::uint32_t>(octave) * 101);
        total += weight;
        weight *= 0.5;
        x *= 2.03;
        y *= 2.03;
    }
    return sum / total;
}

} // namespace DemoTrip
