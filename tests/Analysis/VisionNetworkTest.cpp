// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"
#include "VisionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <thread>

namespace Analysis {
namespace {

using Foundation::Image;

/// Slopes of red and green and a chessboard of blue, at the size that the network sees.
Image chessboard() {
    Image image{224, 224, {}};
    for (int y = 0; y < 224; ++y) {
        for (int x = 0; x < 224; ++x) {
            image.pixels.push_back(static_cast<std::uint8_t>(x * 255 / 223));
            image.pixels.push_back(static_cast<std::uint8_t>(y * 255 / 223));
            image.pixels.push_back((x / 16 + y / 16) % 2 == 1 ? 255 : 0);
        }
    }
    return image;
}

TEST(VisionNetworkTest, AnswersAsThePublishedNetworkDoes) {
    const VisionAnswer answer = sharedNetwork().look(chessboard());
    ASSERT_EQ(answer.classScores.size(), 1000U);
    ASSERT_EQ(answer.embedding.size(), 1024U);
    // Computed apart, with TensorFlow Lite, from the network as published.
    EXPECT_NEAR(answer.classScores[530], 0.273073, 1e-4);
    EXPECT_NEAR(answer.classScores[398], 0.186010, 1e-4);
    EXPECT_NEAR(answer.classScores[599], 0.182366, 1e-4);
    EXPECT_NEAR(answer.classScores[488], 0.121137, 1e-4);
}

TEST(VisionNetworkTest, YieldsProbabilitiesAndNothingNegative) {
    const VisionAnswer answer = sharedNetwork().look(PaintedPhotos::scene(1, 400, 300));
    EXPECT_NEAR(std::accumulate(answer.classScores.begin(), answer.classScores.end(), 0.0), 1, 1e-4);
    EXPECT_GE(*std::min_element(answer.classScores.begin(), answer.classScores.end()), 0);
    EXPECT_GE(*std::min_element(answer.embedding.begin(), answer.embedding.end()), 0);
}

TEST(VisionNetworkTest, AnswersTheSameFromSeveralThreadsAtOnce) {
    std::vector<Image> images;
    for (std::uint32_t seed = 0; seed < 3; ++seed)
        images.push_back(PaintedPhotos::scene(seed, 320, 240));
    std::vector<VisionAnswer> alone;
    for (const Image& image : images)
        alone.push_back(sharedNetwork().look(image));

    std::vector<std::vector<VisionAnswer>> together(3);
    {
        std::vector<std::jthread> threads;
        for (auto& answers : together)
            threads.emplace_back([&] {
                for (const Image& image : images)
                    answers.push_back(sharedNetwork().look(image));
            });
    }
    for (const auto& answers : together) {
        ASSERT_EQ(answers.size(), alone.size());
        for (std::size_t i = 0; i < alone.size(); ++i) {
            EXPECT_EQ(answers[i].embedding, alone[i].embedding);
            EXPECT_EQ(answers[i].classScores, alone[i].classScores);
        }
    }
}

TEST(VisionNetworkTest, LooksAtImagesOfAnyShape) {
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 3000}, {3000, 1}, {2, 2}, {1024, 17}}) {
        const Image image{width, height,
                          std::vector<std::uint8_t>(
                              static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3, 90)};
        const VisionAnswer answer = sharedNetwork().look(image);
        EXPECT_TRUE(std::all_of(answer.embedding.begin(), answer.embedding.end(),
                                [](float value) { return std::isfinite(value); }))
            << width << "x" << height;
    }
}

TEST(VisionNetworkTest, RefusesAnEmptyImage) {
    EXPECT_THROW((void)sharedNetwork().look(Image{}), std::runtime_error);
}

} // namespace
} // namespace Analysis
