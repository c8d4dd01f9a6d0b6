// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/Painting.h>

#include <cstdint>
#include <string_view>
#include <vector>

/// HEIF files put together box by box around HEVC pictures that an encoder makes on the spot.
namespace HeifMaking {

using Bytes = std::vector<std::uint8_t>;

enum class Chroma { mono, c420, c422, c444 };

/// How colours become the encoder's samples.
struct Coding {
    Chroma chroma = Chroma::c420;
    int bits = 8;
    bool fullRange = true;
    /// Weights of red and blue in luma; BT.601 unless said otherwise.
    double red = 0.299;
    double blue = 0.114;
};

/// One coded picture.
struct Coded {
    int width = 0;
    int height = 0;
    /// VPS, SPS, PPS, without start codes.
    std::vector<Bytes> parameterSets;
    /// The slices, each with a four-byte length.
    Bytes data;
};

[[nodiscard]] Coded encoded(int width, int height, const Painting::Quarters& colours,
                            const Coding& coding = {});

[[nodiscard]] Bytes big(std::uint64_t value, int bytes);
[[nodiscard]] Bytes box(std::string_view type, const Bytes& payload);
[[nodiscard]] Bytes fullBox(std::string_view type, int version, std::uint32_t flags, const Bytes& payload);

[[nodiscard]] Bytes rotation(int quarterTurnsAnticlockwise);
[[nodiscard]] Bytes mirror(int axis);
/// Keeps width × height, their middle this far from the picture's.
[[nodiscard]] Bytes crop(int width, int height, int offsetX, int offsetY, int denominator = 1);
[[nodiscard]] Bytes nclx(int primaries, int transfer, int matrix, bool fullRange);
[[nodiscard]] Bytes icc(const Bytes& profile);

struct Layout {
    /// Of the assembled picture; 0 for the one tile's own.
    int width = 0;
    int height = 0;
    int columns = 1;
    int rows = 1;
    bool isGrid = false;
    /// Where the grid's description is: in the meta box (construction method 1) or in the file.
    bool gridInMeta = true;
    int locationVersion = 1;
    /// Ids and association indices of the larger forms.
    bool wideIds = false;
    /// Splits every item's data in two extents.
    bool split = false;
    /// An identity derivation on top.
    bool derived = false;
    /// Properties of the primary item, after its size, in this order.
    std::vector<Bytes> properties;
    /// Things that do not matter for the picture and that stricter readers stumble over: an item with an
    /// unknown type, many auxiliary pictures, metadata that no item owns.
    bool clutter = false;
};

/// `tiles` may hold one picture, which then stands for every tile.
[[nodiscard]] Bytes file(const std::vector<Coded>& tiles, const Layout& layout = {});

} // namespace HeifMaking
