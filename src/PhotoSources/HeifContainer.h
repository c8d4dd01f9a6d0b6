// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ColourProfile.h>
#include <PhotoSources/Orientation.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace PhotoSources {

/// The HEVC parameter sets of an item (hvcC), as NAL units without start codes.
struct HevcParameters {
    /// Bytes of the length before each NAL unit of the item's data.
    int lengthSize = 4;
    std::vector<std::span<const std::uint8_t>> units;
};

/// What a cropping property (clap) keeps, in pixels; the offsets are of its centre from the picture's centre.
struct HeifCrop {
    double width = 0;
    double height = 0;
    double offsetX = 0;
    double offsetY = 0;
};

/// A step from the coded picture to the shown one, in the order in which the file lists them.
using HeifTransform = std::variant<HeifCrop, Orientation>;

/// One coded HEVC picture: the whole image, or a tile of it.
struct HeifTile {
    /// Pieces of the file that make up the item's data, in order.
    std::vector<std::span<const std::uint8_t>> data;
    std::shared_ptr<const HevcParameters> parameters;
    /// Declared size; 0 where the file does not say.
    int width = 0;
    int height = 0;
};

/// The primary picture of a HEIF file, put together from tiles.
struct HeifPicture {
    int width = 0;
    int height = 0;
    int columns = 1;
    int rows = 1;
    /// columns * rows tiles, row by row.
    std::vector<HeifTile> tiles;
    std::vector<HeifTransform> transforms;
    std::optional<ColourCoding> coding;
    /// Empty where there is none.
    std::span<const std::uint8_t> iccProfile;
    /// Another item holds the transparency; it is not read here.
    bool hasAlpha = false;
};

/// Reads the boxes of a HEIF file (ISO/IEC 23008-12 in ISO/IEC 14496-12) as far as showing its primary
/// picture needs. Whatever else is in the file (auxiliary pictures, thumbnails, gain maps, metadata) is
/// passed over, which is why files open here that stricter readers refuse. Every length and index is checked;
/// what is returned points into the bytes given.
namespace HeifContainer {

/// Nothing when the bytes are no such file, or its primary picture is neither HEVC nor a grid of HEVC tiles.
[[nodiscard]] std::optional<HeifPicture> readHevcPicture(std::span<const std::uint8_t> file);

/// How the primary picture's colours are coded, whatever it is compressed with; nothing where the file does
/// not say, or has an ICC profile, which takes precedence.
[[nodiscard]] std::optional<ColourCoding> readUntaggedCoding(std::span<const std::uint8_t> file);

} // namespace HeifContainer

} // namespace PhotoSources
