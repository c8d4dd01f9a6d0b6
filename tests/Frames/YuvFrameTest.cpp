// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/TestPictures.h>
#include <Frames/YuvFrame.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace {

using Frames::FrameSize;
using Frames::YuvFrame;
namespace Testing = Frames::Testing;

YuvFrame uniformFrame(FrameSize size, std::array<std::uint8_t, 3> colour) {
    YuvFrame frame(size);
    for (int p = 0; p < 3; ++p)
        for (int y = 0; y < frame.planeHeight(p); ++y)
            std::fill_n(frame.plane(p) + y * frame.stride(p), frame.planeWidth(p),
                        colour[static_cast<std::size_t>(p)]);
    return frame;
}

TEST(YuvFrameTest, RefusesSizesThatAreNotPositive) {
    EXPECT_THROW(YuvFrame({0, 10}), std::invalid_argument);
    EXPECT_THROW(YuvFrame({10, -1}), std::invalid_argument);
}

TEST(YuvFrameTest, RoundsChromaPlanesOfOddSizesUp) {
    const YuvFrame frame({1001, 563});
    EXPECT_EQ(frame.planeWidth(0), 1001);
    EXPECT_EQ(frame.planeHeight(0), 563);
    EXPECT_EQ(frame.planeWidth(1), 501);
    EXPECT_EQ(frame.planeHeight(2), 282);
}

TEST(YuvFrameTest, AlignsRowsAndPlanes) {
    for (const FrameSize size :
         {FrameSize{1, 1}, FrameSize{16, 16}, FrameSize{1001, 563}, FrameSize{1920, 1080}}) {
        const YuvFrame frame(size);
        for (int p = 0; p < 3; ++p) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(frame.plane(p)) % 64, 0u);
            EXPECT_EQ(frame.stride(p) % 64, 0);
            EXPECT_GE(frame.stride(p), frame.planeWidth(p));
        }
    }
}

TEST(YuvFrameTest, TakesUpTheMemoryOfAnEarlierFrame) {
    const std::uint8_t* memory = nullptr;
    {
        const YuvFrame first({642, 358});
        memory = first.plane(0);
    }
    const YuvFrame second({642, 358});
    EXPECT_EQ(second.plane(0), memory);
    const YuvFrame third({642, 358});
    EXPECT_NE(third.plane(0), memory);
}

TEST(YuvFrameTest, BlackIsLimitedRangeBlackInEverySample) {
    YuvFrame frame = uniformFrame({37, 21}, {200, 10, 240});
    frame.fillBlack();
    for (int p = 0; p < 3; ++p)
        for (int y = 0; y < frame.planeHeight(p); ++y)
            for (int x = 0; x < frame.planeWidth(p); ++x)
                ASSERT_EQ(frame.plane(p)[y * frame.stride(p) + x], p == 0 ? 16 : 128);
}

TEST(YuvFrameTest, BlackAndWhiteBecomeExactlyBlackAndWhitePictures) {
    for (const FrameSize size : {FrameSize{1, 1}, FrameSize{2, 2}, FrameSize{101, 63}, FrameSize{640, 360}}) {
        YuvFrame frame(size);
        frame.fillBlack();
        const Foundation::Image black = toImage(frame);
        EXPECT_EQ(black.width, size.width);
        EXPECT_EQ(black.height, size.height);
        ASSERT_EQ(black.pixels.size(),
                  static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 3);
        EXPECT_TRUE(std::all_of(black.pixels.begin(), black.pixels.end(), [](int v) { return v == 0; }));
        const Foundation::Image white = toImage(uniformFrame(size, {235, 128, 128}));
        EXPECT_TRUE(std::all_of(white.pixels.begin(), white.pixels.end(), [](int v) { return v == 255; }));
    }
}

TEST(YuvFrameTest, ConvertsWithTheMatrixOfBt709) {
    // Pure red: Y = 16 + 219 * 0.2126, Cb = 128 - 224 * 0.2126 / 1.8556, Cr = 128 + 112.
    const Foundation::Image red = toImage(uniformFrame({17, 9}, {63, 102, 240}));
    for (std::size_t i = 0; i < red.pixels.size(); i += 3) {
        EXPECT_NEAR(red.pixels[i], 255, 1);
        EXPECT_NEAR(red.pixels[i + 1], 0, 2);
        EXPECT_NEAR(red.pixels[i + 2], 0, 2);
    }
}

TEST(YuvFrameTest, InterpolatesChromaFromTheLeftPixelOfEachPair) {
    // Grey with a ramp in Cr that a picture shows as a ramp in red: sample i of the ramp lies on pixel 2i.
    YuvFrame frame = uniformFrame({64, 16}, {126, 128, 128});
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 32; ++x)
            frame.plane(2)[y * frame.stride(2) + x] = static_cast<std::uint8_t>(112 + x);
    const Foundation::Image image = toImage(frame);
    for (int x = 8; x < 56; ++x) {
        const double cr = 112 + x / 2.0 - 128;
        const double expected = 255.0 * ((126 - 16) / 219.0 + 1.5748 * cr / 224);
        EXPECT_NEAR(Testing::componentAt(image, 0, x, 8), expected, 1.0) << x;
    }
}

} // namespace
