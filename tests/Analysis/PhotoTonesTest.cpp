// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"

#include <Analysis/PhotoTones.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace Analysis {
namespace {

using Foundation::Image;

PhotoTones tones(const Image& image) {
    return tonesOf(image, halved(greyOf(image)));
}

/// From black on the left to white on the right.
Image ramp() {
    Image image{256, 64, {}};
    for (std::size_t i = 0; i < std::size_t{256} * 64; ++i)
        image.pixels.insert(image.pixels.end(), 3, static_cast<std::uint8_t>(i % 256));
    return image;
}

TEST(PhotoTonesTest, MeasuresARampFromBlackToWhite) {
    const PhotoTones found = tones(ramp());
    EXPECT_NEAR(found.brightness, 0.5, 0.005);
    EXPECT_NEAR(found.contrast, std::sqrt(1.0 / 12), 0.005);
    EXPECT_NEAR(found.highlights, 0.99, 0.01);
    EXPECT_NEAR(found.highlightsFade, 0.009, 0.008);
    EXPECT_NEAR(found.shadows, 0.01, 0.01);
    EXPECT_NEAR(found.burnt, std::log10(4.0 / 25), 0.2);
    EXPECT_NEAR(found.crushed, std::log10(4.0 / 24), 0.2);
}

TEST(PhotoTonesTest, FindsWhatIsBurntAndWhatIsCrushed) {
    Image image{64, 64, std::vector<std::uint8_t>(std::size_t{64} * 64 * 3, 0)};
    std::fill_n(image.pixels.begin(), image.pixels.size() / 4, std::uint8_t{255});
    const PhotoTones found = tones(image);
    EXPECT_DOUBLE_EQ(found.brightness, 0.25);
    EXPECT_DOUBLE_EQ(found.highlights, 1);
    EXPECT_DOUBLE_EQ(found.highlightsFade, 0);
    EXPECT_DOUBLE_EQ(found.shadows, 0);
    EXPECT_GT(found.burnt, 2.5);
    EXPECT_GT(found.crushed, 2.5);
}

TEST(PhotoTonesTest, CountsOneBurntChannel) {
    Image image{64, 64, {}};
    for (int i = 0; i < 64 * 64; ++i)
        image.pixels.insert(image.pixels.end(), {255, 100, 40});
    const PhotoTones found = tones(image);
    EXPECT_GT(found.burnt, 2.5);
    EXPECT_DOUBLE_EQ(found.shadows, 40.0 / 255);
}

TEST(PhotoTonesTest, FollowsTheExposure) {
    const Image scene = PaintedPhotos::scene(4, 400, 300);
    const PhotoTones right = tones(scene);
    const PhotoTones dark = tones(PaintedPhotos::exposed(scene, -2));
    const PhotoTones bright = tones(PaintedPhotos::exposed(scene, 2));
    EXPECT_LT(dark.brightness, right.brightness);
    EXPECT_GT(bright.brightness, right.brightness);
    EXPECT_LT(dark.highlights, right.highlights - 0.2);
    EXPECT_GT(bright.burnt, right.burnt);
}

} // namespace
} // namespace Analysis
