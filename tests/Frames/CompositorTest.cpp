// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Compositor.h>
#include <Frames/TestPictures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace Frames;
using namespace Frames::Testing;

constexpr Colour white{255, 255, 255};

std::shared_ptr<YuvFrame> frameOf(FrameSize size, const PhotoLayer& layer) {
    return compose(size, std::span(&layer, 1), nullptr);
}

/// How much of the frame a white photo covers in a row: the sum of each pixel's share of white.
double coveredInRow(const YuvFrame& frame, int y) {
    double sum = 0;
    for (int x = 0; x < frame.size().width; ++x)
        sum += (sampleAt(frame, 0, x, y) - 16) / 219.0;
    return sum;
}

double coveredInColumn(const YuvFrame& frame, int x) {
    double sum = 0;
    for (int y = 0; y < frame.size().height; ++y)
        sum += (sampleAt(frame, 0, x, y) - 16) / 219.0;
    return sum;
}

TEST(CompositorTest, DrawsBlackWithoutLayers) {
    const auto frame = compose({33, 17}, {}, nullptr);
    YuvFrame black({33, 17});
    black.fillBlack();
    EXPECT_TRUE(sameSamples(*frame, black));
}

TEST(CompositorTest, PreparesNothingForAnEmptyImageAndSkipsALayerWithoutPhoto) {
    EXPECT_EQ(preparePhoto({}), nullptr);
    const auto frame = frameOf({32, 18}, layerOf({}));
    EXPECT_EQ(coveredInRow(*frame, 9), 0);
}

TEST(CompositorTest, RefusesFramesWithoutASize) {
    EXPECT_THROW((void)compose({0, 10}, {}, nullptr), std::invalid_argument);
}

TEST(CompositorTest, PillarBoxesASquarePhoto) {
    const auto frame = frameOf({320, 180}, layerOf(flat(100, 100, white)));
    for (int y = 0; y < 180; ++y)
        for (int x = 0; x < 320; ++x)
            ASSERT_EQ(sampleAt(*frame, 0, x, y), x >= 70 && x < 250 ? 235 : 16) << x << ' ' << y;
    for (int p = 1; p < 3; ++p)
        for (int y = 0; y < 90; ++y)
            for (int x = 0; x < 160; ++x)
                ASSERT_EQ(sampleAt(*frame, p, x, y), 128);
}

TEST(CompositorTest, LetterBoxesAPanorama) {
    const auto frame = frameOf({320, 180}, layerOf(flat(400, 100, white)));
    for (int y = 0; y < 180; ++y)
        for (int x = 0; x < 320; ++x)
            ASSERT_EQ(sampleAt(*frame, 0, x, y), y >= 50 && y < 130 ? 235 : 16) << x << ' ' << y;
}

TEST(CompositorTest, FitsASmallPhotoByEnlargingIt) {
    const auto frame = frameOf({320, 180}, layerOf(flat(4, 2, white)));
    EXPECT_NEAR(coveredInRow(*frame, 90), 320, 0.01);
    EXPECT_NEAR(coveredInColumn(*frame, 160), 160, 0.01);
}

TEST(CompositorTest, ScaleEnlargesAboutTheFramesCentre) {
    // 180 * 1.12 = 201.6 pixels wide: from 59.2 to 260.8.
    const auto frame = frameOf({320, 180}, layerOf(flat(100, 100, white), 1.12));
    for (const int y : {0, 90, 179}) {
        EXPECT_EQ(sampleAt(*frame, 0, 58, y), 16);
        EXPECT_NEAR(sampleAt(*frame, 0, 59, y), 16 + 0.8 * 219, 1);
        EXPECT_EQ(sampleAt(*frame, 0, 60, y), 235);
        EXPECT_EQ(sampleAt(*frame, 0, 259, y), 235);
        EXPECT_NEAR(sampleAt(*frame, 0, 260, y), 16 + 0.8 * 219, 1);
        EXPECT_EQ(sampleAt(*frame, 0, 261, y), 16);
    }
}

TEST(CompositorTest, ScaleLeavesThePhotosCentreInPlace) {
    const Foundation::Image cross = paint(160, 90, [](int x, int y) {
        return x / 80 == y / 45 ? Colour{200, 200, 200} : Colour{50, 50, 50};
    });
    for (const double scale : {1.0, 1.04, 1.08, 1.12}) {
        const auto frame = frameOf({320, 180}, layerOf(cross, scale));
        const int middle = 16 + (200 + 50) / 2 * 219 / 255;
        const int left = sampleAt(*frame, 0, 159, 40);
        const int right = sampleAt(*frame, 0, 160, 40);
        EXPECT_NEAR((left + right) / 2.0, middle, 1.5) << scale;
        EXPECT_GT(left, right);
    }
}

TEST(CompositorTest, PositiveOffsetsMoveRightAndDownByFrameWidths) {
    // 0.01 of 400 pixels is 4 pixels, in both directions.
    const auto frame = frameOf({400, 200}, layerOf(flat(100, 100, white), 0.5, 0.01, 0.01));
    EXPECT_EQ(sampleAt(*frame, 0, 153, 100), 16);
    EXPECT_EQ(sampleAt(*frame, 0, 154, 100), 235);
    EXPECT_EQ(sampleAt(*frame, 0, 253, 100), 235);
    EXPECT_EQ(sampleAt(*frame, 0, 254, 100), 16);
    EXPECT_EQ(sampleAt(*frame, 0, 200, 53), 16);
    EXPECT_EQ(sampleAt(*frame, 0, 200, 54), 235);
    EXPECT_EQ(sampleAt(*frame, 0, 200, 153), 235);
    EXPECT_EQ(sampleAt(*frame, 0, 200, 154), 16);
}

TEST(CompositorTest, OffsetsAreNotScaled) {
    const auto frame = frameOf({400, 200}, layerOf(flat(400, 200, white), 1.1, 0.1));
    // From 200 - 220 + 40 on.
    EXPECT_EQ(sampleAt(*frame, 0, 19, 100), 16);
    EXPECT_EQ(sampleAt(*frame, 0, 20, 100), 235);
}

TEST(CompositorTest, KeepsAnUnscaledPhotoAsItIs) {
    const Foundation::Image image = paint(64, 36, [](int x, int y) {
        const auto value = static_cast<std::uint8_t>((x * 37 + y * 91) % 256);
        return Colour{value, value, value};
    });
    const auto frame = frameOf({64, 36}, layerOf(image));
    for (int y = 0; y < 36; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_EQ(sampleAt(*frame, 0, x, y), std::lround(16 + componentAt(image, 0, x, y) * 219 / 255.0));
    const Foundation::Image back = toImage(*frame);
    for (std::size_t i = 0; i < image.pixels.size(); ++i)
        ASSERT_NEAR(back.pixels[i], image.pixels[i], 1);
}

TEST(CompositorTest, ShowsPureColours) {
    for (const Colour colour :
         {Colour{255, 0, 0}, Colour{0, 255, 0}, Colour{0, 0, 255}, Colour{12, 200, 99}}) {
        const Foundation::Image picture = toImage(*frameOf({160, 90}, layerOf(flat(40, 30, colour), 1.05)));
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(componentAt(picture, c, 80, 45), colour[c], 2);
    }
}

TEST(CompositorTest, ShowsPartOfAPixelAtAnEdgeThatCoversItInPart) {
    for (const int photoSize : {50, 200, 1100}) {
        const auto photo = preparePhoto(flat(photoSize, photoSize, white));
        for (int step = 0; step <= 64; ++step) {
            const double shift = step / 64.0;
            const auto frame = frameOf({200, 100}, {photo, {0.5, {shift / 200, shift / 200}}, 1});
            // From (75, 25) + shift, 50 pixels wide.
            for (int x = 70; x < 130; ++x) {
                const double share =
                    std::clamp(x + 1 - (75 + shift), 0.0, 1.0) - std::clamp(x + 1 - (125 + shift), 0.0, 1.0);
                ASSERT_NEAR((sampleAt(*frame, 0, x, 50) - 16) / 219.0, share, 1.0 / 128) << x << ' ' << shift;
            }
            for (int y = 20; y < 80; ++y) {
                const double share =
                    std::clamp(y + 1 - (25 + shift), 0.0, 1.0) - std::clamp(y + 1 - (75 + shift), 0.0, 1.0);
                ASSERT_NEAR((sampleAt(*frame, 0, 100, y) - 16) / 219.0, share, 1.0 / 128)
                    << y << ' ' << shift;
            }
        }
    }
}

TEST(CompositorTest, ColouredEdgesFadeWithTheChromaSamplesTheyCover) {
    const Foundation::Image red = flat(40, 40, {255, 0, 0});
    for (int step = 0; step < 16; ++step) {
        const double shift = step / 8.0;
        const auto frame = frameOf({160, 80}, layerOf(red, 0.5, shift / 160));
        for (int i = 0; i < 80; ++i) {
            // Sample i stands for the pixels' columns from 2i - 0.5 to 2i + 1.5; the photo begins at 60.
            const double left = 2 * i - 0.5;
            const double share =
                std::max(0.0, std::min(left + 2, 100 + shift) - std::max(left, 60 + shift)) / 2;
            ASSERT_NEAR(sampleAt(*frame, 2, i, 20), 128 + 112 * share, 1.01) << i << ' ' << shift;
        }
    }
}

TEST(CompositorTest, EdgesMoveMonotonicallyDuringASlowPan) {
    const auto photo = preparePhoto(flat(300, 300, white));
    double previous = 1000;
    for (int step = 0; step < 400; ++step) {
        const auto frame = frameOf({320, 180}, {photo, {1, {0.0001 * step, 0}}, 1});
        double left = 0;
        for (int x = 0; x < 160; ++x)
            left += (sampleAt(*frame, 0, x, 90) - 16) / 219.0;
        EXPECT_LE(left, previous + 1e-9);
        EXPECT_NEAR(left, 90 - 320 * 0.0001 * step, 1.0 / 64);
        previous = left;
    }
}

struct Centroid {
    double x = 0;
    double y = 0;
};

Centroid brightnessCentroid(const YuvFrame& frame, int background) {
    Centroid sum;
    double weight = 0;
    for (int y = 0; y < frame.size().height; ++y)
        for (int x = 0; x < frame.size().width; ++x) {
            const double value = sampleAt(frame, 0, x, y) - background;
            weight += value;
            sum.x += value * (x + 0.5);
            sum.y += value * (y + 0.5);
        }
    return {sum.x / weight, sum.y / weight};
}

Foundation::Image blob(int width, int height, double x, double y, double radius) {
    return paint(width, height, [&](int u, int v) {
        const double distance = std::hypot(u + 0.5 - x, v + 0.5 - y) / radius;
        const auto value = static_cast<std::uint8_t>(std::lround(240 * std::exp(-distance * distance)));
        return Colour{value, value, value};
    });
}

TEST(CompositorTest, FeaturesMoveWithTheMotionToAFiftiethOfAPixel) {
    struct Case {
        int width;
        int height;
        double radius;
    };
    // Enlarged, as it is, reduced.
    for (const Case& c : {Case{80, 45, 2.5}, Case{160, 90, 4}, Case{400, 225, 9}}) {
        const Foundation::Image image = blob(c.width, c.height, c.width * 0.4, c.height * 0.55, c.radius);
        for (int step = 0; step < 120; ++step) {
            const double progress = step / 119.0;
            const double scale = 1 + 0.11 * progress;
            const double offsetX = 0.03 - 0.05 * progress;
            const double offsetY = -0.02 + 0.03 * progress;
            const auto frame = frameOf({160, 90}, layerOf(image, scale, offsetX, offsetY));
            const Centroid centroid = brightnessCentroid(*frame, 16);
            ASSERT_NEAR(centroid.x, 80 + 160 * offsetX + scale * 160 * (0.4 - 0.5), 0.02)
                << c.width << ' ' << step;
            ASSERT_NEAR(centroid.y, 45 + 160 * offsetY + scale * 90 * (0.55 - 0.5), 0.02)
                << c.width << ' ' << step;
        }
    }
}

TEST(CompositorTest, ChromaStaysOnTheFeaturesOfTheLuma) {
    // The same ramp in grey and in red; 1200 x 1000 pixels are kept as 4:2:0, 300 x 250 with full chroma.
    for (const int shrink : {1, 4}) {
        const int width = 1200 / shrink;
        const Foundation::Image ramp = paint(width, 1000 / shrink, [&](int x, int) {
            return Colour{static_cast<std::uint8_t>(40 + 160.0 * x / width), 90, 90};
        });
        for (const double offset : {0.0, 0.00137, 0.0031}) {
            const auto frame = frameOf({600, 500}, layerOf(ramp, 1.05, offset));
            for (int i = 20; i < 280; ++i) {
                const double position = 0.5 + (2 * i + 0.5 - 300 - 600 * offset) / (600 * 1.05);
                const double red = 40 + 160 * position - 80.0 / width;
                const double luma = 0.2126 * red + 0.7874 * 90;
                ASSERT_NEAR(sampleAt(*frame, 2, i, 125), 128 + 224 / 255.0 * (red - luma) / 1.5748, 1.0)
                    << i << ' ' << shrink << ' ' << offset;
                ASSERT_NEAR(sampleAt(*frame, 0, 2 * i, 250), 16 + 219 / 255.0 * luma, 1.0);
            }
        }
    }
}

TEST(CompositorTest, ChromaOfLargePhotosLiesBetweenTheRowsOfEachPair) {
    const Foundation::Image ramp = paint(1100, 1000, [&](int, int y) {
        return Colour{static_cast<std::uint8_t>(40 + 160.0 * y / 1000), 90, 90};
    });
    const auto frame = frameOf({1100, 1000}, layerOf(ramp));
    for (int j = 10; j < 490; ++j) {
        const double red = 40 + 160.0 * (2 * j + 0.5) / 1000 - 0.5;
        const double luma = 0.2126 * red + 0.7874 * 90;
        ASSERT_NEAR(sampleAt(*frame, 2, 200, j), 128 + 224 / 255.0 * (red - luma) / 1.5748, 1.0) << j;
    }
}

TEST(CompositorTest, TakesFramesOfAnySize) {
    const Foundation::Image image = flat(333, 222, white);
    for (const FrameSize size : {FrameSize{1, 1}, FrameSize{1, 50}, FrameSize{50, 1}, FrameSize{2, 2},
                                 FrameSize{16, 16}, FrameSize{17, 3}, FrameSize{1001, 563}}) {
        const auto frame = frameOf(size, layerOf(image));
        const double fit = std::min(size.width / 333.0, size.height / 222.0);
        double sum = 0;
        for (int y = 0; y < size.height; ++y)
            sum += coveredInRow(*frame, y);
        const double area = fit * fit * 333 * 222;
        EXPECT_NEAR(sum, area, 0.003 * area + 0.02) << size.width << ' ' << size.height;
    }
}

TEST(CompositorTest, DrawsPhotosMuchLargerThanTheFrame) {
    const auto frame = frameOf({16, 9}, layerOf(flat(3840, 2160, white)));
    for (int y = 0; y < 9; ++y)
        EXPECT_NEAR(coveredInRow(*frame, y), 16, 0.01);
}

TEST(CompositorTest, DrawsPhotosOfExtremeProportions) {
    // A line of 563 / 5000 pixels, in the middle of the frame's middle column.
    const auto upright = frameOf({1001, 563}, layerOf(flat(1, 5000, white)));
    for (const int y : {0, 281, 562}) {
        EXPECT_NEAR(coveredInRow(*upright, y), 563.0 / 5000, 1.0 / 128);
        EXPECT_NEAR((sampleAt(*upright, 0, 500, y) - 16) / 219.0, 563.0 / 5000, 1.0 / 128);
    }
    const auto flatLine = frameOf({1001, 563}, layerOf(flat(5000, 1, white)));
    EXPECT_NEAR(coveredInColumn(*flatLine, 400), 1001.0 / 5000, 1.0 / 128);
    const auto dot = frameOf({640, 360}, layerOf(flat(1, 1, white)));
    EXPECT_NEAR(coveredInRow(*dot, 0), 360, 0.01);
}

TEST(CompositorTest, AMotionThatIsNoMotionDrawsNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const Foundation::Image image = flat(10, 10, white);
    for (const double scale : {nan, infinity, -1.0, 0.0, 1e-12, 1e300})
        EXPECT_EQ(coveredInRow(*frameOf({32, 18}, layerOf(image, scale)), 9), 0) << scale;
    for (const double offset : {nan, infinity, -infinity, 5.0, -1e18}) {
        EXPECT_EQ(coveredInRow(*frameOf({32, 18}, layerOf(image, 1, offset)), 9), 0) << offset;
        EXPECT_EQ(coveredInRow(*frameOf({32, 18}, layerOf(image, 1, 0, offset)), 9), 0) << offset;
    }
}

TEST(CompositorTest, StrongEnlargementsFillTheFrame) {
    for (const double scale : {10.0, 1e3, 1e6})
        EXPECT_NEAR(coveredInRow(*frameOf({32, 18}, layerOf(flat(10, 10, white), scale)), 9), 32, 0.01)
            << scale;
}

TEST(CompositorTest, ADissolveOfCoveringPhotosFadesOneOutAndTheOtherIn) {
    const Foundation::Image current = flat(160, 90, {255, 0, 0});
    const Foundation::Image incoming = flat(160, 90, {20, 60, 220});
    const auto currentAlone = frameOf({160, 90}, layerOf(current));
    const auto incomingAlone = frameOf({160, 90}, layerOf(incoming));
    for (int step = 0; step <= 40; ++step) {
        const double a = step / 40.0;
        const std::vector<PhotoLayer> layers{layerOf(current, 1, 0, 0, 1 - a), layerOf(incoming, 1, 0, 0, a)};
        const auto frame = compose({160, 90}, layers, nullptr);
        for (int p = 0; p < 3; ++p) {
            const int black = p == 0 ? 16 : 128;
            const double expected = black + (sampleAt(*currentAlone, p, 40, 20) - black) * (1 - a) * (1 - a) +
                                    (sampleAt(*incomingAlone, p, 40, 20) - black) * a;
            EXPECT_NEAR(sampleAt(*frame, p, 40, 20), expected, 1.0) << p << ' ' << a;
        }
    }
}

TEST(CompositorTest, ADissolveLeavesWhatTheIncomingPhotoDoesNotCover) {
    const std::vector<PhotoLayer> layers{layerOf(flat(160, 90, white), 1, 0, 0, 0.75),
                                         layerOf(flat(90, 90, {0, 0, 0}), 1, 0, 0, 0.25)};
    const auto frame = compose({160, 90}, layers, nullptr);
    EXPECT_NEAR(sampleAt(*frame, 0, 10, 45), 16 + 219 * 0.75, 0.51);
    EXPECT_NEAR(sampleAt(*frame, 0, 80, 45), 16 + 219 * 0.75 * 0.75, 1);
    EXPECT_NEAR(sampleAt(*frame, 0, 150, 45), 16 + 219 * 0.75, 0.51);
}

TEST(CompositorTest, ALayerOfNoOpacityChangesNothing) {
    const Foundation::Image picture = paint(64, 36, [](int x, int y) {
        return Colour{std::uint8_t(x * 4), std::uint8_t(y * 7), 77};
    });
    const auto alone = frameOf({160, 90}, layerOf(picture, 1.03, 0.001));
    for (const double opacity : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
        const std::vector<PhotoLayer> layers{layerOf(picture, 1.03, 0.001),
                                             layerOf(flat(10, 10, white), 1, 0, 0, opacity)};
        EXPECT_TRUE(sameSamples(*compose({160, 90}, layers, nullptr), *alone));
    }
}

TEST(CompositorTest, ALayerOfFullOpacityHidesWhatItCovers) {
    const Foundation::Image picture = paint(64, 36, [](int x, int y) {
        return Colour{std::uint8_t(x * 4), std::uint8_t(y * 7), 77};
    });
    const auto alone = frameOf({160, 90}, layerOf(picture, 1.03, 0.001));
    for (const double opacity : {1.0, 7.0}) {
        const std::vector<PhotoLayer> layers{layerOf(flat(160, 90, white)),
                                             layerOf(picture, 1.03, 0.001, 0, opacity)};
        EXPECT_TRUE(sameSamples(*compose({160, 90}, layers, nullptr), *alone));
    }
}

TEST(CompositorTest, LayersBlendTheSameInEveryTileOfAWideFrame) {
    const PhotoLayer below = layerOf(flat(100, 40, {200, 40, 90}), 1, 0, 0, 0.6);
    const PhotoLayer above = layerOf(flat(100, 40, {30, 220, 120}), 1, 0, 0, 0.3);
    const std::vector<PhotoLayer> layers{below, above};
    const auto frame = compose({5000, 2000}, layers, nullptr);
    for (int p = 0; p < 3; ++p)
        for (int y = 0; y < frame->planeHeight(p); y += 7)
            for (int x = 0; x < frame->planeWidth(p); ++x)
                ASSERT_EQ(sampleAt(*frame, p, x, y), sampleAt(*frame, p, 500, 500))
                    << p << ' ' << x << ' ' << y;
}

TEST(CompositorTest, GivesTheSameFrameOnEveryThreadEveryTime) {
    const Foundation::Image first = paint(300, 200, [](int x, int y) {
        return Colour{std::uint8_t(x), std::uint8_t(y), std::uint8_t(x * y)};
    });
    const Foundation::Image second = paint(200, 300, [](int x, int y) {
        return Colour{std::uint8_t(x * 3), std::uint8_t(x + y), 9};
    });
    const std::vector<PhotoLayer> layers{layerOf(first, 1.07, 0.0123, -0.02, 0.4),
                                         layerOf(second, 1.01, -0.0123, 0.01, 0.6)};
    const FrameSize size{401, 227};
    const auto expected = compose(size, layers, nullptr);
    std::vector<int> same(4, 0);
    {
        std::vector<std::jthread> threads;
        threads.reserve(same.size());
        for (int& count : same)
            threads.emplace_back([&] {
                for (int i = 0; i < 20; ++i)
                    count += sameSamples(*compose(size, layers, nullptr), *expected);
            });
    }
    EXPECT_EQ(same, std::vector<int>(4, 20));
}

} // namespace
