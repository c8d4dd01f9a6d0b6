#pragma once

#include <Foundation/Image.h>

#include <filesystem>
#include <optional>

namespace PhotoSources::ImageDecoder {

/// The file's first picture, upright, in sRGB, over black where it is transparent, scaled down (never up) so that
/// its longest side is at most `maxPixel` pixels. Nothing when the file cannot be decoded. Decodes at reduced
/// size where the format allows it and refuses pictures so large that they could only be an attack or exhaust
/// memory. Thread-safe.
[[nodiscard]] std::optional<Foundation::Image> decode(const std::filesystem::path& file, int maxPixel);

} // namespace PhotoSources::ImageDecoder
