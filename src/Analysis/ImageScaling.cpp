#include <Analysis/ImageScaling.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

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

} // namespace

FloatImage scaled(const Foundation::Image& image, int width, int height) {
    constexpr std::size_t channels = 3;
    const auto columns = tent(image.width, width);
    const auto rows = tent(image.height, height);
    const std::size_t rowLength = columns.size() * channels;

    // First across, then down.
    std::vector<float> narrowed(static_cast<std::size_t>(image.height) * rowLength);
    float* narrow = narrowed.data();
    for (int y = 0; y < image.height; ++y) {
        const std::uint8_t* row = image.row(y);
        for (const Taps& taps : columns) {
            const std::uint8_t* pixel = row + taps.first * channels;
            float red = 0;
            float green = 0;
            float blue = 0;
            for (const float weight : taps.weights) {
                red += weight * static_cast<float>(pixel[0]);
                green += weight * static_cast<float>(pixel[1]);
                blue += weight * static_cast<float>(pixel[2]);
                pixel += channels;
            }
            *narrow++ = red;
            *narrow++ = green;
            *narrow++ = blue;
        }
    }

    FloatImage result{width, height, std::vector<float>(rows.size() * rowLength)};
    for (std::size_t y = 0; y < rows.size(); ++y) {
        float* target = result.values.data() + y * rowLength;
        const float* source = narrowed.data() + rows[y].first * rowLength;
        for (const float weight : rows[y].weights) {
            for (std::size_t x = 0; x < rowLength; ++x)
                target[x] += weight * source[x];
            source += rowLength;
        }
    }
    return result;
}

} // namespace Analysis
