// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportPreset.h>

#include <gtest/gtest.h>

namespace {

using namespace Export;

TEST(ExportPresetTest, RawValuesNamesAndDimensionsAreThoseOfTheFormat) {
    EXPECT_EQ(rawValue(ExportResolution::p1080), "p1080");
    EXPECT_EQ(rawValue(ExportResolution::p2160), "p2160");
    EXPECT_EQ(displayName(ExportResolution::p1080), "1080p");
    EXPECT_EQ(displayName(ExportResolution::p2160), "4K");
    EXPECT_EQ(rawValue(ExportCodec::h264), "h264");
    EXPECT_EQ(rawValue(ExportCodec::hevc), "hevc");
    EXPECT_EQ(displayName(ExportCodec::h264), "H.264");
    EXPECT_EQ(displayName(ExportCodec::hevc), "HEVC");
    EXPECT_EQ((ExportPreset{ExportResolution::p1080, ExportCodec::h264}.dimensions()),
              (Frames::FrameSize{1920, 1080}));
    EXPECT_EQ((ExportPreset{ExportResolution::p2160, ExportCodec::hevc}.dimensions()),
              (Frames::FrameSize{3840, 2160}));
    EXPECT_EQ((ExportPreset{ExportResolution::p1080, ExportCodec::h264}.codecTag()), "avc1");
    EXPECT_EQ((ExportPreset{ExportResolution::p1080, ExportCodec::hevc}.codecTag()), "hvc1");
}

TEST(ExportPresetTest, EveryCaseComesBackFromItsRawValue) {
    for (const ExportResolution resolution : allExportResolutions)
        EXPECT_EQ(exportResolutionFromRawValue(rawValue(resolution)), resolution);
    for (const ExportCodec codec : allExportCodecs)
        EXPECT_EQ(exportCodecFromRawValue(rawValue(codec)), codec);
}

TEST(ExportPresetTest, OtherTextsAreNoRawValue) {
    EXPECT_EQ(exportResolutionFromRawValue("1080p"), std::nullopt);
    EXPECT_EQ(exportResolutionFromRawValue(""), std::nullopt);
    EXPECT_EQ(exportCodecFromRawValue("H264"), std::nullopt);
    EXPECT_EQ(exportCodecFromRawValue("avc1"), std::nullopt);
}

} // namespace
