// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportPreset.h>

namespace Export {

namespace {

/// The value whose raw text this is.
template <typename Value, std::size_t count>
std::optional<Value> fromRawValue(const std::array<Value, count>& all, std::string_view text) {
    for (const Value value : all) {
        if (rawValue(value) == text)
            return value;
    }
    return std::nullopt;
}

} // namespace

std::string_view rawValue(ExportResolution resolution) {
    return resolution == ExportResolution::p1080 ? "p1080" : "p2160";
}

std::optional<ExportResolution> exportResolutionFromRawValue(std::string_view text) {
    return fromRawValue(allExportResolutions, text);
}

std::string_view displayName(ExportResolution resolution) {
    return resolution == ExportResolution::p1080 ? "1080p" : "4K";
}

std::string_view rawValue(ExportCodec codec) {
    return codec == ExportCodec::h264 ? "h264" : "hevc";
}

std::optional<ExportCodec> exportCodecFromRawValue(std::string_view text) {
    return fromRawValue(allExportCodecs, text);
}

std::string_view displayName(ExportCodec codec) {
    return codec == ExportCodec::h264 ? "H.264" : "HEVC";
}

Frames::FrameSize ExportPreset::dimensions() const {
    return resolution == ExportResolution::p1080 ? Frames::FrameSize{1920, 1080}
                                                 : Frames::FrameSize{3840, 2160};
}

std::string_view ExportPreset::codecTag() const {
    return codec == ExportCodec::h264 ? "avc1" : "hvc1";
}

} // namespace Export
