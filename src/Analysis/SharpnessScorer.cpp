// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/SharpnessScorer.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Analysis::SharpnessScorer {

namespace {

/// One row in grey, 0…255.
void greyRow(const Foundation::Image& image, int y, std::vector<std::int16_t>& grey) {
    const std::uint8_t* pixel = image.row(y);
    for (std::int16_t& value : grey) {
        value = static_cast<std::int16_t>((299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2] + 500) / 1000);
        pixel += 3;
    }
}

} // namespace

std::optional<double> variance(const Foundation::Image& image) {
    if (image.width < 3 || image.height < 3)
        return std::nullopt;
    const auto width = static_cast<std::size_t>(image.width);
    std::array<std::vector<std::int16_t>, 3> rows;
    for (auto& row : rows)
        row.resize(width);
    greyRow(image, 0, rows[0]);
    greyRow(image, 1, rows[1]);

    // Whole numbers, so that neither order nor size costs precision. A Laplacian is within ±1020, so that the
    // squares of a piece of a row fit 32 bits, which is faster than 64.
    constexpr std::size_t piece = 1024;
    std::int64_t sum = 0;
    std::int64_t sumOfSquares = 0;
    for (int y = 1; y < image.height - 1; ++y) {
        const std::int16_t* const above = rows[static_cast<std::size_t>(y - 1) % 3].data();
        const std::int16_t* const here = rows[static_cast<std::size_t>(y) % 3].data();
        auto& below = rows[static_cast<std::size_t>(y + 1) % 3];
        greyRow(image, y + 1, below);
        const std::int16_t* const under = below.data();
        for (std::size_t left = 1; left + 1 < width; left += piece) {
            const std::size_t right = std::min(left + piece, width - 1);
            std::int32_t part = 0;
            std::int32_t partOfSquares = 0;
            for (std::size_t x = left; x < right; ++x) {
                const auto laplacian =
                    static_cast<std::int16_t>(above[x] + under[x] + here[x - 1] + here[x + 1] - 4 * here[x]);
                part += laplacian;
                partOfSquares += laplacian * laplacian;
            }
            sum += part;
            sumOfSquares += partOfSquares;
        }
    }
    const double count = static_cast<double>(image.width - 2) * static_cast<double>(image.height - 2);
    const double mean = static_cast<double>(sum) / count;
    return static_cast<double>(sumOfSquares) / count - mean * mean;
}

} // namespace Analysis::SharpnessScorer
