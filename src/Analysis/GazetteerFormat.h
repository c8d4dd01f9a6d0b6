// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// The files that name places: each a header, a table of sections and the sections, arrays of one of the
/// records below and aligned to 8 bytes, so that the mapped file is used as it lies. Numbers are
/// little-endian. tools/gazetteer writes them, `Gazetteer` reads them. What comes from OpenStreetMap has a
/// file of its own, which refers to the other by nothing but the codes of countries: a licence that asks for
/// the same licence again goes no farther than that file.
namespace Analysis::GazetteerFormat {

struct FileKind {
    std::array<char, 8> magic;
    std::uint32_t version;
    std::uint32_t sectionCount;
    /// What complaints call the file: "The file of …".
    std::string_view content;
};

/// A layer is four sections: Vertex, the position of each cell's first entry, CellEntry and the numbers of
/// edges; `PolygonLayer` says how they hang together.
enum class GazetteerSection : std::uint32_t {
    /// UTF-8: whose work it is, and under which licences.
    Notice,
    /// Town, in k-d tree order: the middle one of a range divides it along x, y, z in turn.
    Towns,
    /// UTF-8 texts, each ended by a zero byte; others name one by the position of its first byte.
    Texts,
    /// Country; a town's or shape's country is a position here.
    Countries,
    /// Text positions of the names of second-level areas, those alone in which towns lie.
    SecondLevelAreas,
    /// The same of first-level areas.
    FirstLevelAreas,
    /// Region: the pieces of land that first-level areas are made of, each a shape of the region layer. An
    /// island is a piece of its own.
    Regions,
    /// The layer of countries with their waters, simplified, and the country of each shape.
    BorderShapes,
    BorderVertices,
    BorderCellStarts,
    BorderCellEntries,
    BorderEdges,
    RegionVertices,
    RegionCellStarts,
    RegionCellEntries,
    RegionEdges,
};
inline constexpr FileKind gazetteerKind{{'R', 'o', 'a', 'm', 'l', 'y', 'G', 'z'}, 3, 16, "place names"};

/// The layer of land alone, which follows the borders themselves; only cells in which countries meet have
/// entries.
enum class LandBorderSection : std::uint32_t {
    /// UTF-8: whose work it is, and under which licence.
    Notice,
    /// The CountryCode of each shape.
    Countries,
    Vertices,
    CellStarts,
    CellEntries,
    Edges,
};
inline constexpr FileKind landBordersKind{{'R', 'o', 'a', 'm', 'l', 'y', 'L', 'b'}, 1, 6, "borders"};

struct Section {
    std::uint64_t offset;
    /// In bytes.
    std::uint64_t size;
    std::uint64_t checksum;
};

/// The sections' table follows it.
struct Header {
    std::array<char, 8> magic;
    std::uint32_t version;
    std::uint32_t sectionCount;
    std::uint64_t fileSize;
    /// Of the sections' table.
    std::uint64_t tableChecksum;
};

inline constexpr std::uint16_t none = 0xFFFF;

struct Town {
    /// The unit vector from the Earth's centre (a sphere), x through 0°N 0°E, z through the north pole.
    std::array<float, 3> position;
    /// How far the town itself extends, were it a disc.
    float radiusKm;
    /// How far outside of it one still says its name rather than a smaller place's: the distance that weighs
    /// as much as the radius.
    float fadeKm;
    std::uint32_t population;
    /// In English.
    std::uint32_t name;
    std::uint16_t country;
    /// Positions of areas, or `none`.
    std::uint16_t firstLevel;
    std::uint16_t secondLevel;
    /// The region whose land it stands on, or `none`.
    std::uint16_t region;
    /// Not zero when the town's centre lies in another country's polygon: the border is too coarse there.
    std::uint32_t isOutsideItsBorders;
};

/// ISO 3166-1 alpha-2 and two zero bytes.
using CountryCode = std::array<char, 4>;

struct Country {
    CountryCode code;
    /// In English.
    std::uint32_t name;
};

struct Region {
    std::uint16_t country;
    /// The same for all pieces of one area.
    std::uint16_t area;
    /// In English; 0xFFFFFFFF when it has none.
    std::uint32_t name;
};

/// In hundred-thousandths of a degree.
struct Vertex {
    std::int32_t longitude;
    std::int32_t latitude;

    friend bool operator==(const Vertex&, const Vertex&) = default;
};

/// One shape in one cell of half a degree.
struct CellEntry {
    std::uint16_t shape;
    /// Not zero when the cell's middle lies inside the shape.
    std::uint16_t containsMiddle;
    /// Its edges that touch the cell: positions in the layer's edge numbers. Edge n leads from vertex n to n
    /// + 1.
    std::uint32_t firstEdge;
    std::uint32_t edgeCount;
};

static_assert(sizeof(Town) == 40 && sizeof(Country) == 8 && sizeof(Region) == 8 && sizeof(Vertex) == 8 &&
              sizeof(CellEntry) == 12 && sizeof(Section) == 24 && sizeof(Header) == 32);

/// Notices any flipped bit and any exchanged words; no protection against intent.
[[nodiscard]] std::uint64_t checksum(std::span<const std::byte> bytes);

} // namespace Analysis::GazetteerFormat
