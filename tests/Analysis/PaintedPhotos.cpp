// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

namespace Analysis::PaintedPhotos {

namespace {

using Foundation::Image;

std::uint8_t level(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

/// 0…1, the same numbers with every standard library.
class Dice {
public:
    explicit Dice(std::uint32_t seed)
        : m_engine(seed) {}
    double next() { return static_cast<double>(m_engine()) / 4294967296.0; }
    double next(double from, double to) { return from + next() * (to - from); }

private:
    std::mt19937 m_engine;
};

struct Thing {
    double x, y, width, height;
    bool isRound;
    std::array<double, 3> colour;
};

} // namespace

Image scene(std::uint32_t seed, int width, int height, int shift) {
    Dice dice(seed);
    const std::array<double, 3> sky{dice.next(60, 220), dice.next(100, 220), dice.next(120, 230)};
    const std::array<double, 3> ground{dice.next(20, 190), dice.next(40, 170), dice.next(20, 140)};
    const double horizon = dice.next(0.25, 0.75);
    const double hills = dice.next(0.02, 0.2);
    const double rhythm = dice.next(2, 14);
    const double grain = dice.next(0.05, 1.2);
    std::vector<Thing> things(static_cast<std::size_t>(dice.next(4, 40)));
    const double size = dice.next(0.05, 0.4);
    for (Thing& thing : things)
        thing = {dice.next(-0.1, 1),    dice.next(-0.1, 1),
                 dice.next(0.02, size), dice.next(0.02, size),
                 dice.next() < 0.5,     {dice.next(10, 235), dice.next(10, 235), dice.next(10, 235)}};

    Image image{width, height, {}};
    image.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const double x = static_cast<double>(column + shift) / width;
            const double y = static_cast<double>(row) / height;
            const bool isSky = y < horizon + hills * std::sin(x * rhythm);
            std::array<double, 3> colour = isSky ? sky : ground;
            double light = isSky ? 1.15 - 0.5 * y : 0.6 + 0.5 * y;
            for (const Thing& thing : things) {
                const double u = (x - thing.x) / thing.width;
                const double v = (y - thing.y) / thing.height;
                const bool isInside = thing.isRound ? (u - 0.5) * (u - 0.5) + (v - 0.5) * (v - 0.5) < 0.25
                                                    : u > 0 && u < 1 && v > 0 && v < 1;
                if (isInside) {
                    colour = thing.colour;
                    light = 1.1 - 0.5 * v;
                }
            }
            const double texture =
                isSky ? 0 : 14 * std::sin((column + shift) * grain) * std::sin(row * grain * 0.8 + 4 * x);
            for (const double part : colour)
                image.pixels.push_back(level(part * light + texture));
        }
    }
    return image;
}

Image blurred(const Image& image, int radius) {
    Image result = image;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            std::array<int, 3> sum{};
            int count = 0;
            for (int v = std::max(0, y - radius); v <= std::min(image.height - 1, y + radius); ++v) {
                for (int u = std::max(0, x - radius); u <= std::min(image.width - 1, x + radius); ++u) {
                    for (std::size_t channel = 0; channel < 3; ++channel)
                        sum[channel] += image.row(v)[static_cast<std::size_t>(u) * 3 + channel];
                    ++count;
                }
            }
            const auto pixel = (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                                static_cast<std::size_t>(x)) *
                               3;
            for (std::size_t channel = 0; channel < 3; ++channel)
                result.pixels[pixel + channel] = static_cast<std::uint8_t>(sum[channel] / count);
        }
    }
    return result;
}

Image moved(const Image& image, int length, int x, int y) {
    Image result = image;
    std::size_t out = 0;
    for (int row = 0; row < image.height; ++row) {
        for (int column = 0; column < image.width; ++column) {
            std::array<int, 3> sum{};
            for (int i = -length / 2; i <= length / 2; ++i) {
                const std::uint8_t* const pixel =
                    image.row(std::clamp(row + i * y, 0, image.height - 1)) +
                    static_cast<std::size_t>(std::clamp(column + i * x, 0, image.width - 1)) * 3;
                for (std::size_t channel = 0; channel < 3; ++channel)
                    sum[channel] += pixel[channel];
            }
            for (const int value : sum)
                result.pixels[out++] = static_cast<std::uint8_t>(value / length);
        }
    }
    return result;
}

Image noisy(const Image& image, double deviation) {
    Dice dice(7);
    Image result = image;
    for (std::uint8_t& value : result.pixels) {
        // The sum of twelve dice is Gaussian enough, and the same everywhere.
        double sum = -6;
        for (int i = 0; i < 12; ++i)
            sum += dice.next();
        value = level(value + sum * deviation);
    }
    return result;
}

Image exposed(const Image& image, double stops) {
    std::array<std::uint8_t, 256> curve{};
    for (std::size_t i = 0; i < curve.size(); ++i) {
        const double light = std::pow(static_cast<double>(i) / 255, 2.2) * std::exp2(stops);
        curve[i] = level(255 * std::pow(light, 1 / 2.2));
    }
    Image result = image;
    for (std::uint8_t& value : result.pixels)
        value = curve[value];
    return result;
}

} // namespace Analysis::PaintedPhotos
