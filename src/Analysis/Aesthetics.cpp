#include <Analysis/Aesthetics.h>
#include <Analysis/BestShotSelector.h>
#include <Analysis/SharpnessScorer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Analysis::Aesthetics {

namespace {

struct GreyImage {
    int width = 0;
    int height = 0;
    std::vector<std::int16_t> values;

    [[nodiscard]] const std::int16_t* row(int y) const {
        return values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

/// The grey image; what needs its colours is measured on the way.
GreyImage greyOf(const Foundation::Image& image, Measures& measures) {
    constexpr int almostWhite = 250;
    constexpr int almostBlack = 5;
    constexpr int burnt = 253;
    GreyImage grey{image.width, image.height, {}};
    const std::size_t count = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    grey.values.reserve(count);
    std::size_t whites = 0;
    std::size_t blacks = 0;
    std::size_t burntOut = 0;
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* pixel = image.pixels.data() + i * 3;
        const int value = (299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2] + 500) / 1000;
        grey.values.push_back(static_cast<std::int16_t>(value));
        whites += value >= almostWhite;
        blacks += value <= almostBlack;
        burntOut += std::max({pixel[0], pixel[1], pixel[2]}) >= burnt;
        sum += static_cast<std::uint64_t>(value);
    }
    const auto part = [&](std::size_t of) { return static_cast<double>(of) / static_cast<double>(count); };
    measures.whites = part(whites);
    measures.blacks = part(blacks);
    measures.burntOut = part(burntOut);
    measures.meanBrightness = static_cast<double>(sum) / static_cast<double>(count) / 255;
    return grey;
}

void measureTones(const GreyImage& grey, Measures& measures) {
    constexpr int block = 4;
    constexpr std::size_t levels = 64;
    std::array<std::size_t, levels> histogram{};
    std::size_t count = 0;
    double sum = 0;
    double squares = 0;
    for (int y = 0; y + block <= grey.height; y += block) {
        for (int x = 0; x + block <= grey.width; x += block) {
            int total = 0;
            for (int row = y; row < y + block; ++row)
                for (int column = x; column < x + block; ++column)
                    total += grey.row(row)[column];
            const double mean = total / 16.0;
            ++histogram[static_cast<std::size_t>(total) / (std::size_t{16} * 256 / levels)];
            ++count;
            sum += mean;
            squares += mean * mean;
        }
    }
    if (count == 0)
        return;
    const auto blocks = static_cast<double>(count);
    for (const std::size_t level : histogram) {
        if (level > 0) {
            const double part = static_cast<double>(level) / blocks;
            measures.tonalRange -= part * std::log2(part) / std::log2(static_cast<double>(levels));
        }
    }
    measures.contrast = std::sqrt(std::max(0.0, squares / blocks - sum * sum / blocks / blocks)) / 255;
}

/// What the difference of two Laplacians leaves, which is blind to even slopes and edges, over each block.
double noiseOf(const GreyImage& grey) {
    constexpr int block = 16;
    // Where the photo is almost black or white, its noise is cut off.
    constexpr double darkest = 16;
    constexpr double brightest = 239;
    // The response to noise has six times its standard deviation.
    constexpr double response = 6;
    std::vector<double> all;
    std::vector<double> midTones;
    for (int top = 1; top + block < grey.height; top += block) {
        for (int left = 1; left + block < grey.width; left += block) {
            std::int64_t squares = 0;
            std::int64_t sum = 0;
            for (int y = top; y < top + block; ++y) {
                const std::int16_t* above = grey.row(y - 1);
                const std::int16_t* here = grey.row(y);
                const std::int16_t* below = grey.row(y + 1);
                for (int x = left; x < left + block; ++x) {
                    const int value = above[x - 1] + above[x + 1] + below[x - 1] + below[x + 1] -
                                      2 * (above[x] + below[x] + here[x - 1] + here[x + 1]) + 4 * here[x];
                    squares += std::int64_t{value} * value;
                    sum += here[x];
                }
            }
            all.push_back(std::sqrt(static_cast<double>(squares) / (block * block)) / response);
            const double mean = static_cast<double>(sum) / (block * block);
            if (mean > darkest && mean < brightest)
                midTones.push_back(all.back());
        }
    }
    if (all.empty())
        return 0;
    const bool areEnough = midTones.size() >= 4 && midTones.size() * 50 >= all.size();
    std::vector<double>& blocks = areEnough ? midTones : all;
    const auto calm = blocks.begin() + static_cast<std::ptrdiff_t>((blocks.size() - 1) / 10);
    std::nth_element(blocks.begin(), calm, blocks.end());
    return *calm;
}

} // namespace

Measures measures(const Foundation::Image& image) {
    Measures measures;
    const GreyImage grey = greyOf(image, measures);
    measureTones(grey, measures);
    measures.laplacianVariance = SharpnessScorer::variance(image).value_or(0);
    measures.noise = noiseOf(grey);
    return measures;
}

double score(const Measures& measures) {
    // Independent noise adds 4·4 + 4·1 times its own variance to that of the Laplacian.
    const double detail = std::max(0.0, measures.laplacianVariance - 20 * measures.noise * measures.noise);
    const double sharpness = BestShotSelector::sharpness(measures.laplacianVariance);
    const double sharpnessByNoise = sharpness - BestShotSelector::sharpness(detail);
    constexpr double goodBrightness = 0.45;
    const double brightness = measures.meanBrightness - goodBrightness;

    // Fitted by logistic regression on pairs of photos and their blurred, noisy and badly exposed versions,
    // such that the whole score of BestShotSelector prefers the photo.
    const double sum = -2.23 + 3.475 * measures.tonalRange - 0.219 * std::sqrt(measures.whites) -
                       1.163 * std::sqrt(measures.blacks) - 4.616 * std::sqrt(measures.burntOut) +
                       0.848 * std::log10(1 + detail) - 8.429 * sharpnessByNoise -
                       0.286 * std::log2(1 + measures.noise) - 1.739 * std::max(0.0, -brightness) +
                       0.92 * std::max(0.0, brightness) + 0.715 * measures.contrast - 1.3 * sharpness;
    return 1 / (1 + std::exp(-sum));
}

double score(const Foundation::Image& image) {
    if (image.width < 3 || image.height < 3)
        return 0.5;
    return score(measures(image));
}

} // namespace Analysis::Aesthetics
