// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideShade.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace {

using Frames::FrameSize;
using Frames::OverlayBitmap;
using Slides::dithered;
namespace SlideShade = Slides::SlideShade;

const std::uint8_t* pixelAt(const OverlayBitmap& bitmap, int x, int y) {
    return bitmap.pixels.data() + 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.width) +
                                       static_cast<std::size_t>(x));
}

/// Mean opacity 0…1 of eight rows from `y` of the bitmap: one period of the dither pattern.
double meanOpacity(const OverlayBitmap& bitmap, int y) {
    double sum = 0;
    for (int row = y; row < y + 8; ++row)
        for (int x = 0; x < bitmap.width; ++x)
            sum += pixelAt(bitmap, x, row)[3];
    return sum / (8.0 * bitmap.width) / 255;
}

TEST(SlideShadeTest, BottomShadeRunsFromClearAtTheCentreToHalfBlackAtTheBottomEdge) {
    const OverlayBitmap shade = SlideShade::bottom({1920, 1080});
    EXPECT_EQ(shade.x, 0);
    EXPECT_EQ(shade.y, 540);
    EXPECT_EQ(shade.width, 1920);
    EXPECT_EQ(shade.height, 540);
    for (const int y : {0, 133, 266, 399, 532})
        EXPECT_NEAR(meanOpacity(shade, y), 0.5 * (y + 4) / 540, 0.0006) << y;
}

TEST(SlideShadeTest, TopShadeRunsFromAlmostHalfBlackAtTheTopEdgeToClearAtTheCentre) {
    const OverlayBitmap shade = SlideShade::top({1920, 1080});
    EXPECT_EQ(shade.x, 0);
    EXPECT_EQ(shade.y, 0);
    EXPECT_EQ(shade.width, 1920);
    EXPECT_EQ(shade.height, 540);
    for (const int y : {0, 133, 266, 399, 532})
        EXPECT_NEAR(meanOpacity(shade, y), 0.55 * (540 - y - 4) / 540, 0.0006) << y;
}

TEST(SlideShadeTest, ShadesArePureBlack) {
    for (const OverlayBitmap& shade : {SlideShade::bottom({64, 36}), SlideShade::top({64, 36})})
        for (std::size_t i = 0; i < shade.pixels.size(); ++i)
            ASSERT_TRUE(i % 4 == 3 || shade.pixels[i] == 0);
}

TEST(SlideShadeTest, NoPixelIsFurtherThanOneStepFromTheExactOpacity) {
    const OverlayBitmap shade = SlideShade::bottom({32, 2160});
    for (int y = 0; y < shade.height; ++y)
        for (int x = 0; x < shade.width; ++x)
            ASSERT_LT(std::abs(pixelAt(shade, x, y)[3] - 255 * 0.5 * (y + 0.5) / 1080), 1.0);
}

TEST(SlideShadeTest, StepsBetweenOpacitiesAreMixedNotBanded) {
    // At 4K an 8-bit step is more than 8 rows high: undithered, the shade would be bands of that height.
    const OverlayBitmap shade = SlideShade::bottom({3840, 2160});
    const auto isUniform = [&](int y) {
        bool uniform = true;
        for (int x = 1; x < 8; ++x)
            uniform = uniform && pixelAt(shade, x, y)[3] == pixelAt(shade, 0, y)[3];
        return uniform;
    };
    int run = 0;
    for (int y = 0; y < shade.height; ++y) {
        run = isUniform(y) ? run + 1 : 0;
        ASSERT_LE(run, 2) << y;
    }
}

TEST(SlideShadeTest, OddAndTinyFramesAreCovered) {
    for (const FrameSize size : {FrameSize{1, 1}, FrameSize{3, 5}, FrameSize{7, 2}, FrameSize{101, 33}}) {
        const OverlayBitmap bottom = SlideShade::bottom(size);
        EXPECT_EQ(bottom.y + bottom.height, size.height);
        EXPECT_EQ(bottom.y, size.height / 2);
        const OverlayBitmap top = SlideShade::top(size);
        EXPECT_EQ(top.y, 0);
        EXPECT_EQ(top.height, (size.height + 1) / 2);
        for (const OverlayBitmap& shade : {bottom, top})
            EXPECT_EQ(shade.pixels.size(), static_cast<std::size_t>(shade.width * shade.height * 4));
    }
}

TEST(SlideShadeTest, DitheringKeepsTheMeanOfAnArea) {
    for (const double value : {0.0, 0.25, 0.5, 17.125, 100.9, 254.5, 255.0}) {
        double sum = 0;
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                sum += dithered(value, x, y);
        EXPECT_NEAR(sum / 64, value, 0.5 / 64 + 1e-9);
    }
}

} // namespace
