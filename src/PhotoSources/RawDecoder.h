// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <PhotoSources/ImageFile.h>

#include <optional>

namespace PhotoSources::RawDecoder {

/// A camera's raw file: developed with the camera's white balance, at half size where the bound allows; where
/// the samples cannot be read, the preview that the camera put into the file. Any thread.
[[nodiscard]] std::optional<Foundation::Image> decode(const ImageFile& file, int maxPixel);

} // namespace PhotoSources::RawDecoder
