// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <PhotoSources/ColourProfile.h>
#include <PhotoSources/ImageFile.h>
#include <PhotoSources/ImageFormat.h>
#include <PhotoSources/Orientation.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace PhotoSources {

/// Samples that another decoder made, on their way through the same scaling and colour conversion.
struct RgbSamples {
    int width = 0;
    int height = 0;
    /// 8, or 16 (in the machine's byte order).
    int bitsPerChannel = 8;
    /// Interleaved R G B without padding.
    std::vector<std::uint8_t> bytes;
    /// What the samples mean; empty for sRGB.
    std::vector<std::uint8_t> iccProfile;
};

/// Everything that goes through libvips: opening what it can open, scaling, colour. Any thread.
namespace VipsPicture {

[[nodiscard]] std::optional<Foundation::Image> decode(const ImageFile& file, ImageFormat format, int maxPixel,
                                                      const std::optional<ColourCoding>& untaggedCoding = {});

/// A JPEG that stands for a sensor's picture inside another file. `orientation` is the sensor's; it holds
/// unless the JPEG has one of its own, or is upright already.
[[nodiscard]] std::optional<Foundation::Image> decodePreview(std::span<const std::uint8_t> jpeg, int maxPixel,
                                                             const Orientation& orientation,
                                                             bool sensorIsWide);

/// `fullWidth` and `fullHeight` are the picture's own size before `orientation`, of which the samples may
/// already be a reduction.
[[nodiscard]] std::optional<Foundation::Image> finish(const RgbSamples& samples, int fullWidth,
                                                      int fullHeight, const Orientation& orientation,
                                                      int maxPixel);

/// The picture as a JPEG without metadata; `quality` is 1…100. Nothing when it cannot be encoded.
[[nodiscard]] std::optional<std::string> jpeg(const Foundation::Image& image, int quality);

} // namespace VipsPicture

} // namespace PhotoSources
