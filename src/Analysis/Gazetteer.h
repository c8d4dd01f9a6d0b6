// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GazetteerFormat.h>
#include <Analysis/PolygonLayer.h>
#include <Analysis/SectionFile.h>
#include <Analysis/TownIndex.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace Analysis {

/// What the two files that name places hold, as one. Any thread.
class Gazetteer {
public:
    /// Throws GazetteerError.
    Gazetteer(const std::filesystem::path& places, const std::filesystem::path& landBorders);

    [[nodiscard]] std::span<const GazetteerFormat::Town> towns() const { return m_towns; }
    [[nodiscard]] std::span<const GazetteerFormat::Country> countries() const { return m_countries; }
    [[nodiscard]] std::span<const std::uint32_t> firstLevelAreas() const { return m_firstLevelAreas; }
    [[nodiscard]] std::span<const std::uint32_t> secondLevelAreas() const { return m_secondLevelAreas; }
    [[nodiscard]] std::span<const GazetteerFormat::Region> regions() const { return m_regions; }
    /// The country of each shape of `borders`.
    [[nodiscard]] std::span<const std::uint16_t> borderShapes() const { return m_borderShapes; }
    [[nodiscard]] const PolygonLayer& borders() const { return m_borders; }
    /// The country of each shape of `landBorders`; `none` where it has no name.
    [[nodiscard]] std::span<const std::uint16_t> landBorderShapes() const { return m_landBorderShapes; }
    /// Land near the borders between countries, true to about a hundred metres.
    [[nodiscard]] const PolygonLayer& landBorders() const { return m_landBorders; }
    /// Its shapes are the regions.
    [[nodiscard]] const PolygonLayer& regionLayer() const { return m_regionLayer; }
    [[nodiscard]] const TownIndex& townIndex() const { return m_townIndex; }
    /// The text that begins at a position.
    [[nodiscard]] std::string_view text(std::uint32_t position) const;

private:
    SectionFile m_placesFile;
    SectionFile m_landBordersFile;
    std::span<const GazetteerFormat::Town> m_towns;
    std::span<const char> m_texts;
    std::span<const GazetteerFormat::Country> m_countries;
    std::span<const std::uint32_t> m_firstLevelAreas;
    std::span<const std::uint32_t> m_secondLevelAreas;
    std::span<const GazetteerFormat::Region> m_regions;
    std::span<const std::uint16_t> m_borderShapes;
    std::vector<std::uint16_t> m_landBorderShapes;
    PolygonLayer m_borders;
    PolygonLayer m_landBorders;
    PolygonLayer m_regionLayer;
    TownIndex m_townIndex;
};

} // namespace Analysis
