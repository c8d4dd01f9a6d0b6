// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <filesystem>
#include <optional>

namespace PhotoSources::ImageDecoder {

/// The file's first picture, upright, in sRGB, over black where it is transparent, scaled down (never up) so
/// that its longest side is at most `maxPixel` pixels. Nothing when the file cannot be decoded.
/// `prepareDecoding` was called. Any thread.
///
/// Formats go by content: JPEG, HEIC, AVIF, PNG, TIFF, WebP, GIF, JPEG XL, JPEG 2000 and what LibRaw knows of
/// camera raw. Drawings (SVG, PDF) are not photos and are not opened. Of a damaged file, what decodes is
/// shown when it is a quarter of the picture at least.
///
/// Decodes at reduced size where the format allows it and refuses, by the header, what could only be an
/// attack or would exhaust memory: JPEG beyond 400 megapixels, HEIC beyond 220, PNG and TIFF beyond 210, the
/// others, which must be decoded as a whole, beyond 70 (raw: 160). A picture at its limit takes about 0.4 GB,
/// of raw 0.7.
[[nodiscard]] std::optional<Foundation::Image> decode(const std::filesystem::path& file, int maxPixel);

} // namespace PhotoSources::ImageDecoder
