// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Stage/FrameConversion.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

namespace {

void fillAtRandom(Frames::YuvFrame& frame, std::mt19937& chance) {
    for (int plane = 0; plane < 3; ++plane) {
        std::uniform_int_distribution<int> sample{16, plane == 0 ? 235 : 240};
        for (int y = 0; y < frame.planeHeight(plane); ++y) {
            for (int x = 0; x < frame.planeWidth(plane); ++x)
                frame.plane(plane)[y * frame.stride(plane) + x] = static_cast<std::uint8_t>(sample(chance));
        }
    }
}

/// The largest distance of a channel between what the screen shows and the exact conversion.
int distance(const Frames::YuvFrame& frame) {
    const QImage shown = Stage::toScreen(frame);
    const Foundation::Image exact = Frames::toImage(frame);
    int most = 0;
    for (int y = 0; y < exact.height; ++y) {
        for (int x = 0; x < exact.width; ++x) {
            const QRgb pixel = shown.pixel(x, y);
            const std::uint8_t* const wanted = exact.row(y) + 3 * x;
            most = std::max({most, std::abs(qRed(pixel) - wanted[0]), std::abs(qGreen(pixel) - wanted[1]),
                             std::abs(qBlue(pixel) - wanted[2])});
        }
    }
    return most;
}

} // namespace

TEST(FrameConversion, IsWithinTwoLevelsOfTheExactConversion) {
    std::mt19937 chance{7};
    for (const Frames::FrameSize size : {Frames::FrameSize{64, 36}, {2, 2}, {1, 1}, {33, 17}, {640, 360}}) {
        Frames::YuvFrame frame{size};
        fillAtRandom(frame, chance);
        EXPECT_LE(distance(frame), 2) << size.width << " x " << size.height;
    }
}

TEST(FrameConversion, BlackIsBlackAndWhiteIsWhite) {
    Frames::YuvFrame frame{{4, 4}};
    frame.fillBlack();
    EXPECT_EQ(Stage::toScreen(frame).pixel(1, 1), qRgb(0, 0, 0));
    for (int y = 0; y < 4; ++y)
        std::fill_n(frame.plane(0) + y * frame.stride(0), 4, std::uint8_t{235});
    EXPECT_EQ(Stage::toScreen(frame).pixel(1, 1), qRgb(255, 255, 255));
}
