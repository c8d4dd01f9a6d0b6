// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/HevcDecoder.h>

#include <cstdint>

namespace PhotoSources {

/// Where converted pixels go: part of a larger picture of interleaved R G B, 8 or 16 bits.
struct RgbTarget {
    std::uint8_t* data = nullptr;
    std::size_t bytesPerRow = 0;
    int bitsPerChannel = 8;
    int width = 0;
    int height = 0;
};

/// Fills the target with the picture's upper left part, reduced by a whole factor (1, 2, 4 or 8: each pixel
/// is the mean of the samples it stands for), as R'G'B' in full range. The target must not reach beyond the
/// reduced picture.
void convertToRgb(const HevcPlanes& picture, const ColourCoding& coding, int reduction,
                  const RgbTarget& target);

} // namespace PhotoSources
