// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace PhotoSources {

/// How a picture's samples are coded, in the code points of ITU-T H.273 (HEIF's nclx, HEVC's VUI).
struct ColourCoding {
    int primaries = 2;
    int transfer = 2;
    int matrix = 2;
    bool fullRange = true;

    friend bool operator==(const ColourCoding&, const ColourCoding&) = default;
};

namespace ColourProfile {

using Bytes = std::vector<std::uint8_t>;

/// An ICC profile for RGB samples of these primaries and this transfer. Nothing when they are sRGB's, or
/// unknown. PQ and HLG are mapped so that diffuse white becomes white and what is brighter is compressed
/// above it.
[[nodiscard]] std::optional<Bytes> forCoding(const ColourCoding& coding);

[[nodiscard]] Bytes adobeRgb();

/// Converts interleaved samples of 8 or 16 bits (the latter in the machine's byte order) from the profile's
/// colours to sRGB, 8 bits R G B: relative colorimetric, black mapped to black. Nothing when the profile is
/// broken or is not for so many channels (1 grey, 3 RGB, 4 CMYK with 255 for full ink).
[[nodiscard]] std::optional<Bytes> toSrgb(std::span<const std::uint8_t> profile, int channels,
                                          int bitsPerChannel, std::span<const std::uint8_t> samples);

} // namespace ColourProfile

} // namespace PhotoSources
