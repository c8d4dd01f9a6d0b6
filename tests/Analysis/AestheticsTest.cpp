// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"
#include "VisionFiles.h"

#include <Analysis/Aesthetics.h>
#include <Analysis/BestShotSelector.h>
#include <Analysis/SharpnessScorer.h>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace Analysis {
namespace {

using Foundation::Image;

double wholeScore(const Image& image) {
    return BestShotSelector::score({sharedAesthetics().score(image),
                                    BestShotSelector::sharpness(SharpnessScorer::variance(image)), false});
}

/// How many of a hundred painted photos win against each of their versions.
double winsOfAHundred(const std::function<std::vector<Image>(const Image&)>& versions) {
    int won = 0;
    int pairs = 0;
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        const Image photo = PaintedPhotos::scene(seed, 400, 300);
        const double score = wholeScore(photo);
        for (const Image& worse : versions(photo)) {
            ++pairs;
            won += score > wholeScore(worse);
        }
    }
    return 100.0 * won / pairs;
}

TEST(AestheticsTest, PrefersPhotosToTheirBlurredVersions) {
    EXPECT_GE(winsOfAHundred([](const Image& photo) {
                  return std::vector{PaintedPhotos::blurred(photo, 1), PaintedPhotos::blurred(photo, 3),
                                     PaintedPhotos::moved(photo, 9, 1, 0),
                                     PaintedPhotos::moved(photo, 9, 0, 1),
                                     PaintedPhotos::moved(photo, 9, 1, 1)};
              }),
              95);
}

TEST(AestheticsTest, PrefersPhotosToTheirNoisyVersionsThoughNoiseRaisesSharpness) {
    EXPECT_GE(winsOfAHundred([](const Image& photo) {
                  return std::vector{PaintedPhotos::noisy(photo, 8), PaintedPhotos::noisy(photo, 15),
                                     PaintedPhotos::noisy(photo, 30), PaintedPhotos::noisy(photo, 50)};
              }),
              95);
}

TEST(AestheticsTest, PrefersPhotosToTheirBadlyExposedVersions) {
    EXPECT_GE(winsOfAHundred([](const Image& photo) {
                  return std::vector{PaintedPhotos::exposed(photo, 1), PaintedPhotos::exposed(photo, 2),
                                     PaintedPhotos::exposed(photo, -1), PaintedPhotos::exposed(photo, -2),
                                     PaintedPhotos::exposed(photo, -3)};
              }),
              95);
}

TEST(AestheticsTest, StaysBetweenZeroAndOneForImagesOfEveryKind) {
    std::uint32_t state = 1;
    for (const auto& [width, height] : {std::pair{3, 3}, {32, 32}, {32, 500}, {500, 33}, {64, 64}}) {
        for (const int kind : {0, 1, 2, 3}) {
            Image image{width, height, {}};
            for (int i = 0; i < width * height * 3; ++i) {
                state = state * 1664525 + 1013904223;
                image.pixels.push_back(kind == 0   ? 0
                                       : kind == 1 ? 255
                                       : kind == 2 ? static_cast<std::uint8_t>(state >> 24)
                                                   : static_cast<std::uint8_t>((state >> 31) * 255));
            }
            const double score = sharedAesthetics().score(image);
            EXPECT_GE(score, 0);
            EXPECT_LE(score, 1);
        }
    }
}

TEST(AestheticsTest, ScoresAnImageTooSmallToTellOneHalf) {
    EXPECT_EQ(sharedAesthetics().score(Image{}), 0.5);
    EXPECT_EQ(sharedAesthetics().score(Image{2, 5, std::vector<std::uint8_t>(30, 200)}), 0.5);
    EXPECT_EQ(sharedAesthetics().score(PaintedPhotos::scene(1, 400, Brisque::smallestSide - 1)), 0.5);
}

} // namespace
} // namespace Analysis
