// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/Gazetteer.h>

#include <algorithm>

namespace Analysis {

namespace {

using namespace GazetteerFormat;

/// The number of the country with the code, or `none`.
std::uint16_t numberOf(const CountryCode& code, std::span<const Country> countries) {
    const auto found = std::find_if(countries.begin(), countries.end(),
                                    [&](const Country& country) { return country.code == code; });
    return found == countries.end() ? none : static_cast<std::uint16_t>(found - countries.begin());
}

/// The layer whose four sections these are.
template <typename Kind>
PolygonLayer layer(const SectionFile& file, Kind vertices, Kind cellStarts, Kind cellEntries, Kind edges) {
    return {file.section<Vertex>(vertices), file.section<std::uint32_t>(cellStarts),
            file.section<CellEntry>(cellEntries), file.section<std::uint32_t>(edges)};
}

} // namespace

Gazetteer::Gazetteer(const std::filesystem::path& places, const std::filesystem::path& landBorders)
    : m_placesFile(places, gazetteerKind)
    , m_landBordersFile(landBorders, landBordersKind)
    , m_towns(m_placesFile.section<Town>(GazetteerSection::Towns))
    , m_texts(m_placesFile.section<char>(GazetteerSection::Texts))
    , m_countries(m_placesFile.section<Country>(GazetteerSection::Countries))
    , m_firstLevelAreas(m_placesFile.section<std::uint32_t>(GazetteerSection::FirstLevelAreas))
    , m_secondLevelAreas(m_placesFile.section<std::uint32_t>(GazetteerSection::SecondLevelAreas))
    , m_regions(m_placesFile.section<Region>(GazetteerSection::Regions))
    , m_borderShapes(m_placesFile.section<std::uint16_t>(GazetteerSection::BorderShapes))
    , m_borders(layer(m_placesFile, GazetteerSection::BorderVertices, GazetteerSection::BorderCellStarts,
                      GazetteerSection::BorderCellEntries, GazetteerSection::BorderEdges))
    , m_landBorders(layer(m_landBordersFile, LandBorderSection::Vertices, LandBorderSection::CellStarts,
                          LandBorderSection::CellEntries, LandBorderSection::Edges))
    , m_regionLayer(layer(m_placesFile, GazetteerSection::RegionVertices, GazetteerSection::RegionCellStarts,
                          GazetteerSection::RegionCellEntries, GazetteerSection::RegionEdges))
    , m_townIndex(m_towns) {
    for (const CountryCode& code : m_landBordersFile.section<CountryCode>(LandBorderSection::Countries))
        m_landBorderShapes.push_back(numberOf(code, m_countries));
}

std::string_view Gazetteer::text(std::uint32_t position) const {
    if (position >= m_texts.size())
        return {};
    const auto begin = m_texts.begin() + position;
    return {begin, std::find(begin, m_texts.end(), '\0')};
}

} // namespace Analysis
