#pragma once

#include <Analysis/GazetteerFormat.h>
#include <Analysis/PolygonLayer.h>
#include <Analysis/TownIndex.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

namespace Analysis {

/// A gazetteer file, mapped into memory and checked as a whole when it is opened. Any thread.
class Gazetteer {
public:
    /// Throws GazetteerError.
    explicit Gazetteer(const std::filesystem::path& file);
    ~Gazetteer();
    Gazetteer(const Gazetteer&) = delete;
    Gazetteer& operator=(const Gazetteer&) = delete;

    [[nodiscard]] std::span<const GazetteerFormat::Town> towns() const { return m_towns; }
    [[nodiscard]] std::span<const GazetteerFormat::Country> countries() const { return m_countries; }
    [[nodiscard]] std::span<const std::uint32_t> firstLevelAreas() const { return m_firstLevelAreas; }
    [[nodiscard]] std::span<const std::uint32_t> secondLevelAreas() const { return m_secondLevelAreas; }
    [[nodiscard]] std::span<const GazetteerFormat::Region> regions() const { return m_regions; }
    /// The country of each shape of `borders`.
    [[nodiscard]] std::span<const std::uint16_t> borderShapes() const { return m_borderShapes; }
    [[nodiscard]] const PolygonLayer& borders() const { return m_borders; }
    /// The country of each shape of `landBorders`.
    [[nodiscard]] std::span<const std::uint16_t> landBorderShapes() const { return m_landBorderShapes; }
    /// Land near the borders between countries, true to about a hundred metres.
    [[nodiscard]] const PolygonLayer& landBorders() const { return m_landBorders; }
    /// Its shapes are the regions.
    [[nodiscard]] const PolygonLayer& regionLayer() const { return m_regionLayer; }
    [[nodiscard]] const TownIndex& townIndex() const { return m_townIndex; }
    /// The text that begins at a position.
    [[nodiscard]] std::string_view text(std::uint32_t position) const;

private:
    void readSections(const std::filesystem::path& file);

    template <typename Record>
    std::span<const Record> section(GazetteerFormat::SectionKind kind) const;

    std::span<const std::byte> m_bytes;
    std::span<const GazetteerFormat::Town> m_towns;
    std::span<const char> m_texts;
    std::span<const GazetteerFormat::Country> m_countries;
    std::span<const std::uint32_t> m_firstLevelAreas;
    std::span<const std::uint32_t> m_secondLevelAreas;
    std::span<const GazetteerFormat::Region> m_regions;
    std::span<const std::uint16_t> m_borderShapes;
    std::span<const std::uint16_t> m_landBorderShapes;
    PolygonLayer m_borders;
    PolygonLayer m_landBorders;
    PolygonLayer m_regionLayer;
    TownIndex m_townIndex;
};

} // namespace Analysis
