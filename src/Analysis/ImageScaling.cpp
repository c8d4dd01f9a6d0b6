// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/ImageScaling.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace Analysis {

namespace {

/// Which pixels of a row, and how much of each, make one pixel of the shorter or longer row.
struct Taps {
    std::size_t first = 0;
    std::vector<float> weights;
};

/// A tent as wide as one pixel of the coarser of the two rows.
std::vector<Taps> tent(int from, int to) {
    const double scale = static_cast<double>(from) / to;
    const double reach = std::max(1.0, scale);
    std::vector<Taps> all(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const double centre = (i + 0.5) * scale;
        const int first = std::max(0, static_cast<int>(std::floor(centre - reach)));
        const int end = std::min(from, static_cast<int>(std::ceil(centre + reach)));
        Taps& taps = all[static_cast<std::size_t>(i)];
        taps.first = static_cast<std::size_t>(first);
        double sum = 0;
        std::vector<double> weights;
        for (int x = first; x < end; ++x) {
            weights.push_back(std::max(0.0, 1 - std::abs(x + 0.5 - centre) / reach));
            sum += weights.back();
        }
        for (const double weight : weights)
            taps.weights.push_back(static_cast<float>(weight / sum));
    }
    return all;
}

/// Adds a row of bytes, each times the weight.
void accumulate(const std::uint8_t* source, float weight, std::vector<float>& sums) {
    for (std::size_t i = 0; i < sums.size(); ++i)
        sums[i] += weight * static_cast<float>(source[i]);
}

} // namespace

FloatPlanes::FloatPlanes(int planeWidth, int planeHeight)
    : width(planeWidth)
    , height(planeHeight)
    , values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3) {}

float* FloatPlanes::row(std::size_t channel, int y) {
    const auto rows = channel * static_cast<std::size_t>(height) + static_cast<std::size_t>(y);
    return values.data() + rows * static_cast<std::size_t>(width);
}

const float* FloatPlanes::row(std::size_t channel, int y) const {
    return const_cast<FloatPlanes*>(this)->row(channel, y);
}

FloatPlanes scaled(const Foundation::Image& image, int width, int height) {
    constexpr std::size_t channels = 3;
    const auto columns = tent(image.width, width);
    const auto rows = tent(image.height, height);

    // First down, which runs along whole rows, then across what few rows are left.
    FloatPlanes result(width, height);
    std::vector<float> blended(static_cast<std::size_t>(image.width) * channels);
    for (int y = 0; y < height; ++y) {
        const Taps& down = rows[static_cast<std::size_t>(y)];
        std::fill(blended.begin(), blended.end(), 0.0F);
        auto source = static_cast<int>(down.first);
        for (const float weight : down.weights)
            accumulate(image.row(source++), weight, blended);

        std::array<float*, channels> target{result.row(0, y), result.row(1, y), result.row(2, y)};
        for (const Taps& across : columns) {
            const float* pixel = blended.data() + across.first * channels;
            std::array<float, channels> sum{};
            for (const float weight : across.weights) {
                for (std::size_t channel = 0; channel < channels; ++channel)
                    sum[channel] += weight * pixel[channel];
                pixel += channels;
            }
            for (std::size_t channel = 0; channel < channels; ++channel)
                *target[channel]++ = sum[channel];
        }
    }
    return result;
}

} // namespace Analysis
