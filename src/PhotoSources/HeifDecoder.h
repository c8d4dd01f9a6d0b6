// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <PhotoSources/HeifContainer.h>

#include <optional>

namespace PhotoSources::HeifDecoder {

/// The primary picture of an HEVC-coded HEIF file, without libheif: opens files that older versions of it
/// refuse. Large pictures are reduced tile by tile, so memory follows the bound rather than the picture.
/// Any thread; uses the machine's cores for one picture's tiles.
[[nodiscard]] std::optional<Foundation::Image> decode(const HeifPicture& picture, int maxPixel);

} // namespace PhotoSources::HeifDecoder
