#pragma once

#include <cstdint>
#include <optional>
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

} // namespace ColourProfile

} // namespace PhotoSources
