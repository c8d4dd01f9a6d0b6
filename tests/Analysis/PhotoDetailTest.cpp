// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"

#include <Analysis/PhotoDetail.h>
#include <Analysis/SharpnessScorer.h>

#include <gtest/gtest.h>

namespace Analysis {
namespace {

using Foundation::Image;

PhotoDetail detail(const Image& image) {
    const GreyImage grey = greyOf(image);
    return detailOf(image, grey, halved(grey));
}

Image uniform(int width, int height, std::uint8_t level) {
    return {width, height, std::vector<std::uint8_t>(static_cast<std::size_t>(width * height * 3), level)};
}

TEST(PhotoDetailTest, FindsNothingInAnEvenImage) {
    for (const auto& [width, height] : {std::pair{3, 3}, {320, 240}, {17, 200}}) {
        const PhotoDetail found = detail(uniform(width, height, 120));
        EXPECT_EQ(found.variance, 0);
        EXPECT_EQ(found.varianceAtHalfSize, 0);
        EXPECT_EQ(found.noise, 0);
        EXPECT_EQ(found.colourNoise, 0);
        EXPECT_EQ(found.evenness, 0);
    }
}

TEST(PhotoDetailTest, MeasuresTheNoiseThatWasAdded) {
    const PhotoDetail found = detail(PaintedPhotos::noisy(uniform(320, 240, 120), 10));
    // Of grey: three independent channels, weighed. Of colours: one channel minus another, 14.1. The calmest
    // blocks show a little less.
    EXPECT_NEAR(found.noise, 6.68, 0.8);
    EXPECT_NEAR(found.colourNoise, 12.8, 1.3);
}

TEST(PhotoDetailTest, TakesNeitherSlopesNorEdgesForNoise) {
    Image image = uniform(320, 240, 0);
    for (std::size_t i = 0; i < image.pixels.size(); ++i)
        image.pixels[i] = static_cast<std::uint8_t>(i / 3 % 320 / 2 + (i / 960 > 100 ? 60 : 0));
    const PhotoDetail found = detail(image);
    EXPECT_LT(found.noise, 0.2);
    EXPECT_LT(found.colourNoise, 0.2);
}

TEST(PhotoDetailTest, MeasuresTheVarianceThatSharpnessIsScoredBy) {
    const Image scene = PaintedPhotos::scene(5, 301, 223);
    const double expected = *SharpnessScorer::variance(scene);
    EXPECT_NEAR(detail(scene).variance, expected, expected * 1e-5);
}

TEST(PhotoDetailTest, SeesTheDirectionInWhichTheCameraMoved) {
    const Image still = PaintedPhotos::noisy(uniform(320, 240, 120), 30);
    EXPECT_GT(detail(still).evenness, -0.2);
    for (const auto& [x, y] : {std::pair{1, 0}, {0, 1}, {1, 1}, {1, -1}})
        EXPECT_LT(detail(PaintedPhotos::moved(still, 9, x, y)).evenness, -0.4) << x << ' ' << y;
    EXPECT_GT(detail(PaintedPhotos::blurred(still, 2)).evenness, -0.4);
}

} // namespace
} // namespace Analysis
