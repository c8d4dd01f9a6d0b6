// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/SharpnessScorer.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace Analysis {
namespace {

using Foundation::Image;

Image uniform(int width, int height, std::uint8_t grey) {
    return {width, height, std::vector<std::uint8_t>(static_cast<std::size_t>(width * height * 3), grey)};
}

TEST(SharpnessScorerTest, FindsNothingInImagesTwoPixelsWideOrHigh) {
    EXPECT_EQ(SharpnessScorer::variance(uniform(2, 100, 5)), std::nullopt);
    EXPECT_EQ(SharpnessScorer::variance(uniform(100, 2, 5)), std::nullopt);
    EXPECT_EQ(SharpnessScorer::variance({}), std::nullopt);
}

TEST(SharpnessScorerTest, FindsNoVarianceInUniformGrey) {
    EXPECT_EQ(SharpnessScorer::variance(uniform(30, 20, 128)), 0.0);
    EXPECT_EQ(SharpnessScorer::variance(uniform(3, 3, 255)), 0.0);
}

TEST(SharpnessScorerTest, MeasuresTheLaplacianOfInnerPixelsOnly) {
    // One bright pixel in the middle of 5 by 5: once -400, four times 100, four times 0; the mean is 0.
    Image image = uniform(5, 5, 0);
    for (std::size_t channel = 0; channel < 3; ++channel)
        image.pixels[(2 * 5 + 2) * 3 + channel] = 100;
    EXPECT_DOUBLE_EQ(*SharpnessScorer::variance(image), (400.0 * 400 + 4 * 100.0 * 100) / 9);
    // In a corner no inner pixel sees it.
    Image corner = uniform(5, 5, 0);
    corner.pixels[0] = corner.pixels[1] = corner.pixels[2] = 100;
    EXPECT_EQ(SharpnessScorer::variance(corner), 0.0);
}

TEST(SharpnessScorerTest, AgreesWithThePlainFormula) {
    std::mt19937 random(4);
    Image image = uniform(37, 23, 0);
    for (auto& value : image.pixels)
        value = static_cast<std::uint8_t>(random());
    std::vector<double> grey;
    for (std::size_t i = 0; i < image.pixels.size(); i += 3)
        grey.push_back(std::floor(
            (299 * image.pixels[i] + 587 * image.pixels[i + 1] + 114 * image.pixels[i + 2] + 500) / 1000.0));
    std::vector<double> values;
    for (std::size_t y = 1; y < 22; ++y) {
        for (std::size_t x = 1; x < 36; ++x)
            values.push_back(grey[(y - 1) * 37 + x] + grey[(y + 1) * 37 + x] + grey[y * 37 + x - 1] +
                             grey[y * 37 + x + 1] - 4 * grey[y * 37 + x]);
    }
    double mean = 0;
    for (const double value : values)
        mean += value / static_cast<double>(values.size());
    double variance = 0;
    for (const double value : values)
        variance += (value - mean) * (value - mean) / static_cast<double>(values.size());
    EXPECT_NEAR(*SharpnessScorer::variance(image), variance, 1e-6);
}

} // namespace
} // namespace Analysis
