// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/PhotoDetail.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Analysis {

namespace {

/// Noise is measured block by block.
constexpr int block = 16;

/// The blocks across and down; the pixels at the border have no neighbours on all sides.
struct BlockGrid {
    int across = 0;
    int down = 0;

    explicit BlockGrid(const GreyImage& image)
        : across((image.width - 2) / block)
        , down((image.height - 2) / block) {}
};

/// Calls `take(column, sum)` with the sum of `values` over each block's width.
template <typename Take>
void forEachBlock(const std::vector<float>& values, int across, Take take) {
    for (int column = 0; column < across; ++column) {
        const float* const from = values.data() + static_cast<std::size_t>(column) * block + 1;
        float sum = 0;
        for (std::size_t x = 0; x < block; ++x)
            sum += from[x];
        take(static_cast<std::size_t>(column), sum);
    }
}

/// For each block whether it is neither almost black nor almost white, where noise is cut off.
std::vector<bool> midTones(const GreyImage& grey) {
    constexpr float darkest = 16;
    constexpr float brightest = 239;
    const BlockGrid grid(grey);
    std::vector<bool> areMid;
    std::vector<float> sums(static_cast<std::size_t>(grey.width));
    for (int row = 0; row < grid.down; ++row) {
        std::fill(sums.begin(), sums.end(), 0.0F);
        for (int y = row * block + 1; y <= (row + 1) * block; ++y) {
            const float* const here = grey.row(y);
            for (std::size_t x = 0; x < sums.size(); ++x)
                sums[x] += here[x];
        }
        forEachBlock(sums, grid.across, [&](std::size_t, float sum) {
            const float mean = sum / (block * block);
            areMid.push_back(mean > darkest && mean < brightest);
        });
    }
    return areMid;
}

/// What the difference of two Laplacians leaves, which is blind to even slopes and edges, over the calmest
/// tenth of the blocks, those of every so many rows of blocks. `rowOf(y, buffer)` yields a row; it may use
/// the buffer.
template <typename RowOf>
double noiseOf(const GreyImage& grey, const std::vector<bool>& areMid, int step, RowOf rowOf) {
    // The response to noise has six times its standard deviation.
    constexpr double response = 6;
    const BlockGrid grid(grey);
    const auto width = static_cast<std::size_t>(grey.width);
    std::vector<float> all;
    std::vector<float> mid;
    std::array<std::vector<float>, 3> buffers;
    for (auto& buffer : buffers)
        buffer.resize(width);
    std::vector<float> bend(width);
    std::vector<float> squares(width);
    for (int row = 0; row < grid.down; row += step) {
        std::fill(squares.begin(), squares.end(), 0.0F);
        const int top = row * block + 1;
        const auto bufferOf = [&](int y) -> std::vector<float>& {
            return buffers[static_cast<std::size_t>(y) % 3];
        };
        const float* above = rowOf(top - 1, bufferOf(top - 1));
        const float* here = rowOf(top, bufferOf(top));
        for (int y = top; y < top + block; ++y) {
            const float* const below = rowOf(y + 1, bufferOf(y + 1));
            for (std::size_t x = 0; x < width; ++x)
                bend[x] = above[x] - 2 * here[x] + below[x];
            for (std::size_t x = 1; x + 1 < width; ++x) {
                const float value = bend[x - 1] - 2 * bend[x] + bend[x + 1];
                squares[x] += value * value;
            }
            above = here;
            here = below;
        }
        forEachBlock(squares, grid.across, [&](std::size_t column, float sum) {
            const auto first = static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.across);
            if (areMid[first + column])
                mid.push_back(sum);
            all.push_back(sum);
        });
    }
    if (all.empty())
        return 0;
    const bool areEnough = mid.size() >= 4 && mid.size() * 50 >= all.size();
    std::vector<float>& blocks = areEnough ? mid : all;
    const auto calm = blocks.begin() + static_cast<std::ptrdiff_t>((blocks.size() - 1) / 10);
    std::nth_element(blocks.begin(), calm, blocks.end());
    return std::sqrt(static_cast<double>(*calm) / (block * block)) / response;
}

/// Of one colour minus another.
double colourNoiseOf(const Foundation::Image& image, const GreyImage& grey, const std::vector<bool>& areMid,
                     std::size_t one, std::size_t other) {
    return noiseOf(grey, areMid, 2, [&](int y, std::vector<float>& buffer) {
        const std::uint8_t* pixel = image.row(y);
        for (float& value : buffer) {
            value = static_cast<float>(pixel[one] - pixel[other]);
            pixel += 3;
        }
        return static_cast<const float*>(buffer.data());
    });
}

double evennessOf(const GreyImage& grey) {
    // How much the image bends from left to right, from top to bottom, and along both diagonals.
    std::array<double, 4> bends{};
    const auto width = static_cast<std::size_t>(grey.width);
    for (int y = 1; y + 1 < grey.height; ++y) {
        const float* const above = grey.row(y - 1);
        const float* const here = grey.row(y);
        const float* const below = grey.row(y + 1);
        float level = 0;
        float upright = 0;
        float falling = 0;
        float rising = 0;
        for (std::size_t x = 1; x + 1 < width; ++x) {
            const float twice = 2 * here[x];
            const float a = here[x - 1] + here[x + 1] - twice;
            const float b = above[x] + below[x] - twice;
            const float c = above[x - 1] + below[x + 1] - twice;
            const float d = above[x + 1] + below[x - 1] - twice;
            level += a * a;
            upright += b * b;
            falling += c * c;
            rising += d * d;
        }
        bends[0] += static_cast<double>(level);
        bends[1] += static_cast<double>(upright);
        bends[2] += static_cast<double>(falling);
        bends[3] += static_cast<double>(rising);
    }
    const double count = static_cast<double>(grey.width) * static_cast<double>(grey.height);
    const double least = *std::min_element(bends.begin(), bends.end()) / count;
    const double mean = (bends[0] + bends[1] + bends[2] + bends[3]) / 4 / count;
    return std::log((least + 1) / (mean + 1));
}

double laplacianVariance(const GreyImage& grey) {
    if (grey.width < 3 || grey.height < 3)
        return 0;
    double sum = 0;
    double squares = 0;
    const auto width = static_cast<std::size_t>(grey.width);
    for (int y = 1; y + 1 < grey.height; ++y) {
        const float* const above = grey.row(y - 1);
        const float* const here = grey.row(y);
        const float* const below = grey.row(y + 1);
        float rowSum = 0;
        float rowSquares = 0;
        for (std::size_t x = 1; x + 1 < width; ++x) {
            const float value = above[x] + below[x] + here[x - 1] + here[x + 1] - 4 * here[x];
            rowSum += value;
            rowSquares += value * value;
        }
        sum += static_cast<double>(rowSum);
        squares += static_cast<double>(rowSquares);
    }
    const double count = static_cast<double>(grey.width - 2) * static_cast<double>(grey.height - 2);
    return std::max(0.0, squares / count - sum / count * (sum / count));
}

} // namespace

PhotoDetail detailOf(const Foundation::Image& image, const GreyImage& grey, const GreyImage& half) {
    constexpr std::size_t red = 0;
    constexpr std::size_t green = 1;
    constexpr std::size_t blue = 2;
    const std::vector<bool> areMid = midTones(grey);
    PhotoDetail detail;
    detail.variance = laplacianVariance(grey);
    detail.varianceAtHalfSize = laplacianVariance(half);
    detail.noise = noiseOf(grey, areMid, 1, [&](int y, std::vector<float>&) { return grey.row(y); });
    detail.colourNoise = std::min(colourNoiseOf(image, grey, areMid, red, green),
                                  colourNoiseOf(image, grey, areMid, blue, green));
    detail.evenness = evennessOf(grey);
    return detail;
}

} // namespace Analysis
