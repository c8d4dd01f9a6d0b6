// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"
#include "VisionFiles.h"

#include <Analysis/Brisque.h>
#include <Analysis/GreyImage.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace Analysis {
namespace {

using Foundation::Image;

const Brisque& sharedBrisque() {
    static const Brisque brisque(sharedFile(Brisque::fileName));
    return brisque;
}

double score(const Image& image) {
    return sharedBrisque().score(Brisque::features(greyOf(image)));
}

/// A ramp under a chequerboard and some grain, of whole numbers only.
GreyImage grainyChequers(int width, int height) {
    GreyImage image{width, height, {}};
    for (std::uint32_t y = 0; y < static_cast<std::uint32_t>(height); ++y) {
        for (std::uint32_t x = 0; x < static_cast<std::uint32_t>(width); ++x) {
            const std::uint32_t grain = (x * 7919 + y * 104729) * 2654435761U >> 28;
            const std::uint32_t level =
                40 + x * 150 / static_cast<std::uint32_t>(width) + (x / 8 + y / 8) % 2 * 40 + grain;
            image.values.push_back(static_cast<float>(level));
        }
    }
    return image;
}

TEST(BrisqueTest, MeasuresTheFeaturesThatOpenCVDoes) {
    // Computed by OpenCV 4.6's quality module.
    constexpr Brisque::Features expected{
        10.,    .34352,  1.523,  -.0507,  .15912, .11088,  1.291, -.04866, .21099, .15543,  1.601,  -.07649,
        .13983, .07576,  1.417,  -.08239, .18838, .10605,  10.,   .50202,  2.691,  -.18662, .47052, .21029,
        2.894,  -.12945, .43004, .24891,  2.558,  -.16671, .3866, .17457,  2.797,  -.13299, .36126, .19315};
    const Brisque::Features features = Brisque::features(grainyChequers(96, 80));
    for (std::size_t i = 0; i < features.size(); ++i)
        EXPECT_NEAR(features[i], expected[i], 0.001) << i;
}

TEST(BrisqueTest, ScoresAsOpenCVDoes) {
    // Computed by OpenCV 4.6's quality module with the same model. Where a picture is flat, rounding decides
    // on which side of the mean a pixel lies, which moves the score by up to one.
    struct Answer {
        std::uint32_t seed;
        double scene;
        double blurred;
        double noisy;
    };
    for (const Answer& answer : {Answer{1, 69.153, 66.343, 50.237}, Answer{2, 61.932, 61.163, 48.704},
                                 Answer{3, 64.128, 57.590, 48.396}, Answer{10, 89.805, 65.406, 52.268}}) {
        const Image scene = PaintedPhotos::scene(answer.seed, 320, 240);
        EXPECT_NEAR(score(scene), answer.scene, 1.2) << answer.seed;
        EXPECT_NEAR(score(PaintedPhotos::blurred(scene, 2)), answer.blurred, 1.2) << answer.seed;
        EXPECT_NEAR(score(PaintedPhotos::noisy(scene, 15)), answer.noisy, 0.1) << answer.seed;
    }
}

TEST(BrisqueTest, StaysFiniteForImagesOfEveryKind) {
    std::uint32_t state = 1;
    for (const auto& [width, height] :
         {std::pair{0, 0}, {1, 1}, {31, 500}, {32, 32}, {33, 47}, {500, 32}, {64, 64}}) {
        for (const int kind : {0, 1, 2, 3, 4}) {
            GreyImage image{width, height, {}};
            for (int i = 0; i < width * height; ++i) {
                state = state * 1664525 + 1013904223;
                image.values.push_back(kind == 0   ? 0.0F
                                       : kind == 1 ? 255.0F
                                       : kind == 2 ? static_cast<float>(state >> 24)
                                       : kind == 3 ? static_cast<float>((state >> 31) * 255)
                                                   : static_cast<float>(i == width * height / 2 ? 255 : 0));
            }
            const Brisque::Features features = Brisque::features(image);
            EXPECT_TRUE(std::all_of(features.begin(), features.end(),
                                    [](double value) { return std::isfinite(value); }));
            const double score = sharedBrisque().score(features);
            EXPECT_GE(score, 0);
            EXPECT_LE(score, 100);
        }
    }
}

TEST(BrisqueTest, LeavesOutImagesThatAreTooSmall) {
    EXPECT_EQ(Brisque::features(grainyChequers(Brisque::smallestSide - 1, 200)), Brisque::Features{});
    EXPECT_NE(Brisque::features(grainyChequers(Brisque::smallestSide, 200)), Brisque::Features{});
}

} // namespace
} // namespace Analysis
