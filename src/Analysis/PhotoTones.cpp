// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/PhotoTones.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace Analysis {

namespace {

/// How often each of the 256 levels occurs.
class Histogram {
public:
    void add(int level) {
        ++m_counts[static_cast<std::size_t>(level)];
        ++m_total;
    }

    /// The part of all that lies at the levels from…to. 0…1.
    [[nodiscard]] double part(std::size_t from, std::size_t to) const {
        std::size_t sum = 0;
        for (std::size_t level = from; level <= to; ++level)
            sum += m_counts[level];
        return static_cast<double>(sum) / static_cast<double>(m_total);
    }

    /// The lowest level that at least this part of all does not exceed, 0…1.
    [[nodiscard]] double quantile(double part) const {
        const double wanted = part * static_cast<double>(m_total);
        std::size_t level = 0;
        std::size_t sum = m_counts[0];
        while (static_cast<double>(sum) < wanted && level + 1 < m_counts.size())
            sum += m_counts[++level];
        return static_cast<double>(level) / 255;
    }

    [[nodiscard]] double mean() const {
        double sum = 0;
        for (std::size_t level = 0; level < m_counts.size(); ++level)
            sum += static_cast<double>(level) * static_cast<double>(m_counts[level]);
        return sum / static_cast<double>(m_total) / 255;
    }

private:
    std::array<std::size_t, 256> m_counts{};
    std::size_t m_total = 0;
};

/// A few pixels more or less do not count.
double ratio(double part, double other) {
    constexpr double few = 5e-4;
    return std::log10((part + few) / (other + few));
}

int levelOf(const std::uint8_t* pixel) {
    return (299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2] + 500) / 1000;
}

double contrastOf(const GreyImage& image) {
    if (image.values.empty())
        return 0;
    double sum = 0;
    double squares = 0;
    for (const float value : image.values) {
        const auto level = static_cast<double>(value);
        sum += level;
        squares += level * level;
    }
    const auto count = static_cast<double>(image.values.size());
    return std::sqrt(std::max(0.0, squares / count - sum / count * (sum / count))) / 255;
}

} // namespace

PhotoTones tonesOf(const Foundation::Image& image, const GreyImage& half) {
    // Every fourth pixel says enough.
    Histogram grey;
    Histogram brightest;
    Histogram darkest;
    for (int y = 0; y < image.height; y += 2) {
        const std::uint8_t* pixel = image.row(y);
        for (int x = 0; x < image.width; x += 2, pixel += 6) {
            const auto [low, high] = std::minmax({pixel[0], pixel[1], pixel[2]});
            grey.add(levelOf(pixel));
            brightest.add(high);
            darkest.add(low);
        }
    }
    PhotoTones tones;
    tones.brightness = grey.mean();
    tones.contrast = contrastOf(halved(half));
    tones.highlights = brightest.quantile(0.99);
    tones.highlightsFade = brightest.quantile(0.999) - tones.highlights;
    tones.shadows = darkest.quantile(0.01);
    tones.burnt = ratio(brightest.part(252, 255), brightest.part(225, 249));
    tones.crushed = ratio(grey.part(0, 3), grey.part(6, 29));
    return tones;
}

} // namespace Analysis
