#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The gazetteer file: a header, a table of sections and the sections, each an array of one of the records
/// below and aligned to 8 bytes, so that the mapped file is used as it lies. Numbers are little-endian.
/// tools/gazetteer writes it, `Gazetteer` reads it.
namespace Analysis::GazetteerFormat {

inline constexpr std::array<char, 8> magic{'R', 'o', 'a', 'm', 'l', 'y', 'G', 'z'};
inline constexpr std::uint32_t version = 2;

enum class SectionKind : std::uint32_t {
    /// Town, in k-d tree order: the middle one of a range divides it along x, y, z in turn.
    Towns,
    /// UTF-8 texts, each ended by a zero byte; others name one by the position of its first byte.
    Texts,
    /// Country; a town's or shape's country is a position here.
    Countries,
    /// Text positions of the names of second-level areas.
    SecondLevelAreas,
    /// Text positions of the names of first-level areas.
    FirstLevelAreas,
    /// Region: the pieces of land that first-level areas are made of, each a shape of the region layer. An
    /// island
    /// is a piece of its own.
    Regions,
    /// The polygon layers: Vertex, CellStart, CellEntry and edge numbers of each. The first holds countries
    /// with
    /// their waters, simplified; the second, land alone, follows the borders themselves, and only the cells
    /// in
    /// which countries meet have entries; the third holds regions.
    BorderVertices,
    BorderShapes,
    BorderCellStarts,
    BorderCellEntries,
    BorderEdges,
    LandBorderVertices,
    LandBorderShapes,
    LandBorderCellStarts,
    LandBorderCellEntries,
    LandBorderEdges,
    RegionVertices,
    RegionCellStarts,
    RegionCellEntries,
    RegionEdges,
    /// For each town the text position, in AlternateTexts, of its other names, separated by commas, in any
    /// language and script.
    AlternateNames,
    AlternateTexts,
    /// CountryName: what countries are called in other languages.
    CountryNames,
};
inline constexpr std::size_t sectionCount = 23;

struct Section {
    std::uint64_t offset;
    /// In bytes.
    std::uint64_t size;
    std::uint64_t checksum;
};

struct Header {
    std::array<char, 8> magic;
    std::uint32_t version;
    std::uint32_t sectionCount;
    std::uint64_t fileSize;
    /// Of the sections' table.
    std::uint64_t tableChecksum;
    std::array<Section, GazetteerFormat::sectionCount> sections;
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

struct Country {
    /// ISO 3166-1 alpha-2 and two zero bytes.
    std::array<char, 4> code;
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

struct CountryName {
    std::array<char, 4> language;
    std::uint32_t country;
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

static_assert(sizeof(Town) == 40 && sizeof(Country) == 8 && sizeof(Region) == 8 &&
              sizeof(CountryName) == 12 && sizeof(Vertex) == 8 && sizeof(CellEntry) == 12 &&
              sizeof(Section) == 24 && sizeof(Header) == 32 + sectionCount * sizeof(Section));

/// Notices any flipped bit and any exchanged words; no protection against intent.
[[nodiscard]] std::uint64_t checksum(std::span<const std::byte> bytes);

} // namespace Analysis::GazetteerFormat
