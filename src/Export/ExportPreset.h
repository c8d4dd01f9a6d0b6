// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/FrameSize.h>

#include <array>
#include <optional>
#include <string_view>

namespace Export {

enum class ExportResolution { p1080, p2160 };
enum class ExportCodec { h264, hevc };

inline constexpr std::array allExportResolutions{ExportResolution::p1080, ExportResolution::p2160};
inline constexpr std::array allExportCodecs{ExportCodec::h264, ExportCodec::hevc};

/// "p1080", "p2160".
[[nodiscard]] std::string_view rawValue(ExportResolution resolution);
[[nodiscard]] std::optional<ExportResolution> exportResolutionFromRawValue(std::string_view text);
/// "1080p", "4K".
[[nodiscard]] std::string_view displayName(ExportResolution resolution);

/// "h264", "hevc".
[[nodiscard]] std::string_view rawValue(ExportCodec codec);
[[nodiscard]] std::optional<ExportCodec> exportCodecFromRawValue(std::string_view text);
/// "H.264", "HEVC".
[[nodiscard]] std::string_view displayName(ExportCodec codec);

struct ExportPreset {
    ExportResolution resolution = ExportResolution::p1080;
    ExportCodec codec = ExportCodec::h264;

    [[nodiscard]] Frames::FrameSize dimensions() const;
    /// The sample entry's four-character code: "avc1" or "hvc1".
    [[nodiscard]] std::string_view codecTag() const;

    friend bool operator==(const ExportPreset&, const ExportPreset&) = default;
};

} // namespace Export
