// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportEstimate.h>

#include <gtest/gtest.h>

namespace Export {
namespace {

constexpr ExportPreset plain{.resolution = ExportResolution::p1080, .codec = ExportCodec::h264};

TEST(ExportEstimate, GrowsWithTheFilm) {
    const ExportEstimate one = estimateExport(60, plain, 4);
    const ExportEstimate two = estimateExport(120, plain, 4);
    EXPECT_GT(one.bytes, 0);
    EXPECT_GT(one.seconds, 0);
    EXPECT_DOUBLE_EQ(two.bytes, 2 * one.bytes);
    EXPECT_DOUBLE_EQ(two.seconds, 2 * one.seconds);
}

TEST(ExportEstimate, ProcessorsShareTheTimeAndNotTheBytes) {
    EXPECT_DOUBLE_EQ(estimateExport(60, plain, 8).seconds, estimateExport(60, plain, 2).seconds / 4);
    EXPECT_DOUBLE_EQ(estimateExport(60, plain, 8).bytes, estimateExport(60, plain, 2).bytes);
}

TEST(ExportEstimate, TellsThePresetsApart) {
    const auto of = [](ExportResolution resolution, ExportCodec codec) {
        return estimateExport(60, {.resolution = resolution, .codec = codec}, 1);
    };
    using enum ExportResolution;
    using enum ExportCodec;
    // HEVC is for smaller files and takes longer; 4K is larger and takes longer.
    EXPECT_LT(of(p1080, hevc).bytes, of(p1080, h264).bytes);
    EXPECT_GT(of(p1080, hevc).seconds, of(p1080, h264).seconds);
    EXPECT_GT(of(p2160, h264).bytes, of(p1080, h264).bytes);
    EXPECT_GT(of(p2160, h264).seconds, of(p1080, h264).seconds);
    EXPECT_LT(of(p2160, hevc).bytes, of(p2160, h264).bytes);
    EXPECT_GT(of(p2160, hevc).seconds, of(p2160, h264).seconds);
}

TEST(ExportEstimate, NothingCostsNothing) {
    EXPECT_EQ(estimateExport(0, plain, 4), ExportEstimate{});
    EXPECT_EQ(estimateExport(-3, plain, 4), ExportEstimate{});
    EXPECT_EQ(estimateExport(60, plain, 0), estimateExport(60, plain, 1));
}

} // namespace
} // namespace Export
