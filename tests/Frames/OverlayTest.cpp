// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Compositor.h>
#include <Frames/TestPictures.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <vector>

namespace {

using namespace Frames;
using namespace Frames::Testing;

using Rgba = std::array<std::uint8_t, 4>;

OverlayBitmap bitmapOf(int x, int y, int width, int height, Rgba colour) {
    OverlayBitmap bitmap{x, y, width, height, {}};
    for (int i = 0; i < width * height; ++i)
        bitmap.pixels.insert(bitmap.pixels.end(), colour.begin(), colour.end());
    return bitmap;
}

std::shared_ptr<YuvFrame> frameOver(FrameSize size, Colour ground,
                                    const std::vector<OverlayBitmap>& bitmaps) {
    const PhotoLayer layer = layerOf(flat(size.width, size.height, ground));
    return compose(size, std::span(&layer, 1), prepareOverlay(bitmaps, size).get());
}

TEST(OverlayTest, ClearBitmapsChangeNothing) {
    const auto plain = frameOver({61, 35}, {90, 160, 30}, {});
    const auto clear = frameOver({61, 35}, {90, 160, 30}, {bitmapOf(3, 2, 40, 30, {0, 0, 0, 0})});
    EXPECT_TRUE(sameSamples(*plain, *clear));
}

TEST(OverlayTest, OpaqueColoursReplaceWhatIsBelow) {
    const auto frame =
        frameOver({80, 40}, {90, 160, 30},
                  {bitmapOf(10, 10, 20, 20, {255, 255, 255, 255}), bitmapOf(40, 10, 20, 20, {255, 0, 0, 255}),
                   bitmapOf(64, 10, 10, 20, {0, 0, 0, 255})});
    EXPECT_EQ(sampleAt(*frame, 0, 15, 15), 235);
    EXPECT_EQ(sampleAt(*frame, 1, 9, 8), 128);
    EXPECT_EQ(sampleAt(*frame, 2, 9, 8), 128);
    EXPECT_EQ(sampleAt(*frame, 0, 50, 15), 63);
    EXPECT_EQ(sampleAt(*frame, 1, 25, 8), 102);
    EXPECT_EQ(sampleAt(*frame, 2, 25, 8), 240);
    EXPECT_EQ(sampleAt(*frame, 0, 68, 15), 16);
    EXPECT_EQ(sampleAt(*frame, 1, 34, 8), 128);
}

TEST(OverlayTest, TouchesNoPixelOutsideItsBitmaps) {
    const auto plain = frameOver({80, 40}, {90, 160, 30}, {});
    const auto frame = frameOver({80, 40}, {90, 160, 30}, {bitmapOf(10, 10, 20, 20, {100, 0, 100, 200})});
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 80; ++x) {
            if (x < 10 || y < 10 || x >= 30 || y >= 30) {
                ASSERT_EQ(sampleAt(*frame, 0, x, y), sampleAt(*plain, 0, x, y));
            }
        }
    for (int j = 0; j < 20; ++j)
        for (int i = 0; i < 40; ++i) {
            if (i < 5 || j < 5 || i > 15 || j >= 15) {
                ASSERT_EQ(sampleAt(*frame, 2, i, j), sampleAt(*plain, 2, i, j)) << i << ' ' << j;
            }
        }
}

TEST(OverlayTest, HalfBlackHalvesTheDistanceToBlack) {
    const auto frame = frameOver({32, 18}, {255, 0, 0}, {bitmapOf(0, 0, 32, 18, {0, 0, 0, 128})});
    const double kept = 1 - 128 / 255.0;
    EXPECT_NEAR(sampleAt(*frame, 0, 9, 9), 16 + 47 * kept, 0.51);
    EXPECT_NEAR(sampleAt(*frame, 1, 9, 4), 128 - 26 * kept, 0.51);
    EXPECT_NEAR(sampleAt(*frame, 2, 9, 4), 128 + 112 * kept, 0.51);
}

TEST(OverlayTest, BlendsBitmapsInTheOrderGiven) {
    const OverlayBitmap shade = bitmapOf(0, 0, 32, 18, {0, 0, 0, 128});
    const OverlayBitmap text = bitmapOf(4, 4, 8, 8, {255, 255, 255, 255});
    EXPECT_EQ(sampleAt(*frameOver({32, 18}, {90, 90, 90}, {shade, text}), 0, 8, 8), 235);
    EXPECT_NEAR(sampleAt(*frameOver({32, 18}, {90, 90, 90}, {text, shade}), 0, 8, 8),
                16 + 219 * (1 - 128 / 255.0), 0.51);
}

TEST(OverlayTest, ClipsBitmapsToTheFrame) {
    const auto frame = frameOver(
        {31, 17}, {90, 90, 90},
        {bitmapOf(-10, -10, 12, 12, {255, 255, 255, 255}), bitmapOf(30, 16, 50, 50, {255, 255, 255, 255}),
         bitmapOf(100, 100, 5, 5, {255, 255, 255, 255}), bitmapOf(-100, 3, 5, 5, {255, 255, 255, 255})});
    EXPECT_EQ(sampleAt(*frame, 0, 1, 1), 235);
    EXPECT_EQ(sampleAt(*frame, 0, 2, 2), 93);
    EXPECT_EQ(sampleAt(*frame, 0, 30, 16), 235);
    EXPECT_EQ(sampleAt(*frame, 0, 29, 16), 93);
    EXPECT_EQ(sampleAt(*frame, 0, 0, 4), 93);
}

TEST(OverlayTest, ColouredPixelsSpreadOverTheChromaSamplesTheyBelongTo) {
    // One red column: pixel 10 is the centre of chroma sample 5 and carries half of it.
    const auto even = frameOver({32, 16}, {0, 0, 0}, {bitmapOf(10, 0, 1, 16, {255, 0, 0, 255})});
    EXPECT_NEAR(sampleAt(*even, 2, 5, 4), 128 + 56, 1);
    EXPECT_EQ(sampleAt(*even, 2, 4, 4), 128);
    EXPECT_EQ(sampleAt(*even, 2, 6, 4), 128);
    // Pixel 11 lies between samples 5 and 6 and gives each a quarter.
    const auto odd = frameOver({32, 16}, {0, 0, 0}, {bitmapOf(11, 0, 1, 16, {255, 0, 0, 255})});
    EXPECT_NEAR(sampleAt(*odd, 2, 5, 4), 128 + 28, 1);
    EXPECT_NEAR(sampleAt(*odd, 2, 6, 4), 128 + 28, 1);
}

TEST(OverlayTest, AShadesSlopeIsMonotoneOnAFlatGround) {
    OverlayBitmap shade{0, 0, 4, 256, {}};
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 4; ++x)
            shade.pixels.insert(shade.pixels.end(), {0, 0, 0, static_cast<std::uint8_t>(y)});
    for (const Colour ground : {Colour{255, 255, 255}, Colour{97, 97, 97}, Colour{10, 200, 240}}) {
        const auto plain = frameOver({4, 256}, ground, {});
        const auto frame = frameOver({4, 256}, ground, {shade});
        for (int y = 0; y < 256; ++y) {
            const int value = sampleAt(*frame, 0, 1, y);
            EXPECT_NEAR(value, 16 + (sampleAt(*plain, 0, 1, y) - 16) * (1 - y / 255.0), 0.505);
            if (y > 0) {
                EXPECT_LE(value, sampleAt(*frame, 0, 1, y - 1));
            }
        }
    }
}

TEST(OverlayTest, GreysStayGreyUnderShadesAndWhiteText) {
    std::vector<OverlayBitmap> bitmaps;
    for (int i = 0; i < 40; ++i) {
        const auto alpha = static_cast<std::uint8_t>(i * 6 + 5);
        bitmaps.push_back(bitmapOf(i * 3, 0, 3, 20, {0, 0, 0, alpha}));
        bitmaps.push_back(bitmapOf(i * 3 + 1, 20, 2, 20, {alpha, alpha, alpha, alpha}));
    }
    const auto frame = frameOver({120, 40}, {120, 120, 120}, bitmaps);
    for (int p = 1; p < 3; ++p)
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 60; ++x)
                ASSERT_EQ(sampleAt(*frame, p, x, y), 128);
}

TEST(OverlayTest, DrawsOverABlackFrameWithoutLayers) {
    const std::vector<OverlayBitmap> card{bitmapOf(0, 0, 64, 36, {0, 0, 0, 255}),
                                          bitmapOf(20, 10, 10, 10, {255, 255, 255, 255})};
    const auto frame = compose({64, 36}, {}, prepareOverlay(card, {64, 36}).get());
    EXPECT_EQ(sampleAt(*frame, 0, 5, 5), 16);
    EXPECT_EQ(sampleAt(*frame, 0, 25, 15), 235);
}

TEST(OverlayTest, RefusesBitmapsWithTooFewPixelsAndFramesOfAnotherSize) {
    OverlayBitmap broken = bitmapOf(0, 0, 8, 8, {0, 0, 0, 255});
    broken.pixels.resize(8 * 8 * 4 - 1);
    EXPECT_THROW((void)prepareOverlay(std::span(&broken, 1), {64, 36}), std::invalid_argument);
    const auto overlay = prepareOverlay({}, {64, 36});
    EXPECT_THROW((void)compose({64, 38}, {}, overlay.get()), std::invalid_argument);
}

TEST(OverlayTest, AColourAboveItsAlphaIsTakenAsFull) {
    const auto frame = frameOver({32, 18}, {0, 0, 0}, {bitmapOf(0, 0, 32, 18, {255, 255, 255, 100})});
    EXPECT_NEAR(sampleAt(*frame, 0, 9, 9), 16 + 219 * 100 / 255.0, 0.51);
}

} // namespace
