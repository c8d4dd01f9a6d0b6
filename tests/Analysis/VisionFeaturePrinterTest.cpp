// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"
#include "VisionFiles.h"

#include <Analysis/VisionFeaturePrinter.h>

#include <gtest/gtest.h>

#include <cmath>

namespace Analysis {
namespace {

double distance(const std::vector<float>& a, const std::vector<float>& b) {
    double squares = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        squares += std::pow(static_cast<double>(a[i]) - static_cast<double>(b[i]), 2);
    return std::sqrt(squares);
}

TEST(VisionFeaturePrinterTest, PutsShotsOfOneSceneBelowOneHalfAndOtherScenesAbove) {
    VisionFeaturePrinter printer(sharedNetwork());
    constexpr int width = 480;
    constexpr int height = 360;
    std::vector<std::vector<float>> prints;
    for (std::uint32_t seed = 1; seed <= 8; ++seed) {
        const auto image = PaintedPhotos::scene(seed, width, height);
        prints.push_back(printer.features(image).value());
        for (const auto& again :
             {PaintedPhotos::scene(seed, width, height, 15), PaintedPhotos::exposed(image, 0.3),
              PaintedPhotos::exposed(image, -0.3), PaintedPhotos::blurred(image, 1),
              PaintedPhotos::scene(seed, width * 2, height * 2)})
            EXPECT_LT(distance(prints.back(), printer.features(again).value()), 0.5) << seed;
    }
    int apart = 0;
    int pairs = 0;
    for (std::size_t i = 0; i < prints.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j, ++pairs)
            apart += distance(prints[i], prints[j]) > 0.5;
    }
    // Painted scenes have more in common with each other than photos do.
    EXPECT_GE(apart * 100, pairs * 85);
}

TEST(VisionFeaturePrinterTest, GivesEveryPrintTheSameLength) {
    VisionFeaturePrinter printer(sharedNetwork());
    const auto print = printer.features(PaintedPhotos::scene(5, 200, 200)).value();
    ASSERT_EQ(print.size(), 1024U);
    const std::vector<float> nothing(print.size(), 0.0F);
    EXPECT_NEAR(distance(print, nothing), 0.5 / std::sqrt(2 - 2 * 0.76), 1e-5);
}

TEST(VisionFeaturePrinterTest, PrintsNoEmptyImage) {
    VisionFeaturePrinter printer(sharedNetwork());
    EXPECT_FALSE(printer.features(Foundation::Image{}));
}

} // namespace
} // namespace Analysis
