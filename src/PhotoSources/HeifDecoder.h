#pragma once

#include <Foundation/Image.h>

#include <cstdint>
#include <optional>
#include <span>

namespace PhotoSources::HeifDecoder {

/// The primary picture of an HEVC-coded HEIF file, without libheif: opens files that older versions of it
/// refuse. Large pictures are reduced tile by tile, so memory follows the bound rather than the picture.
/// Thread-safe; uses the machine's cores for one picture's tiles.
[[nodiscard]] std::optional<Foundation::Image> decode(std::span<const std::uint8_t> file, int maxPixel);

} // namespace PhotoSources::HeifDecoder
