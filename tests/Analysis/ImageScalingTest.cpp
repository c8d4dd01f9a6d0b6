// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"

#include <Analysis/ImageScaling.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace Analysis {
namespace {

using Foundation::Image;

TEST(ImageScalingTest, PutsEachColourIntoAPlaneOfItsOwn) {
    const Image image{2, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}};
    const FloatPlanes planes = scaled(image, 2, 2);
    EXPECT_EQ(planes.values, (std::vector<float>{1, 4, 7, 10, 2, 5, 8, 11, 3, 6, 9, 12}));
    EXPECT_EQ(planes.row(1, 1)[0], 8);
}

TEST(ImageScalingTest, KeepsAnEvenColourAtEverySize) {
    for (const auto& [width, height] : {std::pair{1, 1}, {3, 1000}, {640, 480}, {1023, 17}}) {
        Image image{width, height, {}};
        for (int i = 0; i < width * height; ++i)
            image.pixels.insert(image.pixels.end(), {200, 100, 50});
        const FloatPlanes planes = scaled(image, 24, 31);
        for (const auto& [channel, value] : {std::pair{0U, 200.0F}, {1U, 100.0F}, {2U, 50.0F}}) {
            for (int y = 0; y < planes.height; ++y)
                for (int x = 0; x < planes.width; ++x)
                    ASSERT_NEAR(planes.row(channel, y)[x], value, 1e-3) << width << "x" << height;
        }
    }
}

TEST(ImageScalingTest, CountsEveryPixelHoweverMuchTheImageShrinks) {
    Image image{900, 600, std::vector<std::uint8_t>(std::size_t{900} * 600 * 3, 0)};
    for (const std::size_t place : {250U, 451U, 648U})
        image.pixels[(std::size_t{300} * 900 + place) * 3] = 255;
    const FloatPlanes planes = scaled(image, 9, 6);
    const float all = std::accumulate(planes.values.begin(), planes.values.end(), 0.0F);
    // Three pixels of 540,000, each with its share of the 54 that are left.
    EXPECT_NEAR(all, 3 * 255.0 * 54 / 540'000, 1e-3);
    EXPECT_EQ(std::count_if(planes.row(1, 0), planes.row(1, 0) + 54, [](float v) { return v != 0; }), 0);
}

TEST(ImageScalingTest, LooksAlikeFromEveryResolution) {
    const FloatPlanes small = scaled(PaintedPhotos::scene(3, 320, 240), 40, 30);
    const FloatPlanes large = scaled(PaintedPhotos::scene(3, 1280, 960), 40, 30);
    double difference = 0;
    for (std::size_t i = 0; i < small.values.size(); ++i)
        difference += static_cast<double>(std::abs(small.values[i] - large.values[i]));
    EXPECT_LT(difference / static_cast<double>(small.values.size()), 6);
}

} // namespace
} // namespace Analysis
