#include <Analysis/SharpnessScorer.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Analysis::SharpnessScorer {

namespace {

/// One row in grey, 0…255.
void greyRow(const Foundation::Image& image, int y, std::vector<std::int32_t>& grey) {
    const std::uint8_t* pixel = image.row(y);
    for (std::int32_t& value : grey) {
        value = (299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2] + 500) / 1000;
        pixel += 3;
    }
}

} // namespace

std::optional<double> variance(const Foundation::Image& image) {
    if (image.width < 3 || image.height < 3)
        return std::nullopt;
    const auto width = static_cast<std::size_t>(image.width);
    std::array<std::vector<std::int32_t>, 3> rows;
    for (auto& row : rows)
        row.resize(width);
    greyRow(image, 0, rows[0]);
    greyRow(image, 1, rows[1]);

    // Whole numbers, so that neither order nor size costs precision: a Laplacian is within ±1020.
    std::int64_t sum = 0;
    std::int64_t sumOfSquares = 0;
    for (int y = 1; y < image.height - 1; ++y) {
        const auto& above = rows[static_cast<std::size_t>(y - 1) % 3];
        const auto& here = rows[static_cast<std::size_t>(y) % 3];
        auto& below = rows[static_cast<std::size_t>(y + 1) % 3];
        greyRow(image, y + 1, below);
        std::int64_t rowSum = 0;
        std::int64_t rowSquares = 0;
        for (std::size_t x = 1; x + 1 < width; ++x) {
            const std::int64_t laplacian = above[x] + below[x] + here[x - 1] + here[x + 1] - 4 * here[x];
            rowSum += laplacian;
            rowSquares += laplacian * laplacian;
        }
        sum += rowSum;
        sumOfSquares += rowSquares;
    }
    const double count = static_cast<double>(image.width - 2) * static_cast<double>(image.height - 2);
    const double mean = static_cast<double>(sum) / count;
    return static_cast<double>(sumOfSquares) / count - mean * mean;
}

} // namespace Analysis::SharpnessScorer
