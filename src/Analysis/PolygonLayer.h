// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GazetteerFormat.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace Analysis {

/// Which of many shapes hold a point, and how far the nearest edge is. The Earth is cut into cells of half a
/// degree; each knows the edges that touch it, and of each shape whether its middle lies inside. A point is
/// inside when the line from it to its cell's middle crosses an even number of edges of a shape that holds
/// the middle, or an odd number of one that does not. Views memory that it does not own. Any thread.
class PolygonLayer {
public:
    static constexpr int cellsPerDegree = 2;
    static constexpr int columns = 360 * cellsPerDegree;
    static constexpr int rows = 180 * cellsPerDegree;
    static constexpr std::int32_t unitsPerDegree = 100'000;
    static constexpr std::int32_t unitsPerCell = unitsPerDegree / cellsPerDegree;

    PolygonLayer() = default;
    /// `cellStarts`: for each cell, by rows from the south-west, the position of its first entry; one more
    /// ends the last.
    PolygonLayer(std::span<const GazetteerFormat::Vertex> vertices, std::span<const std::uint32_t> cellStarts,
                 std::span<const GazetteerFormat::CellEntry> cellEntries,
                 std::span<const std::uint32_t> edges)
        : m_vertices(vertices)
        , m_cellStarts(cellStarts)
        , m_cellEntries(cellEntries)
        , m_edges(edges) {}

    /// Whether all positions in the tables lead to something.
    [[nodiscard]] bool isConsistent() const;

    /// Whether no shape touches the cell that holds the point.
    [[nodiscard]] bool isEmptyAround(double latitude, double longitude) const;

    /// The first shape, in the order of their numbers from `first` on, that holds the point (degrees, on
    /// Earth).
    [[nodiscard]] std::optional<std::uint16_t> shapeAt(double latitude, double longitude,
                                                       std::uint32_t first = 0) const;

    struct NearEdge {
        std::uint16_t shape;
        double distanceKm;
        /// Of the edge: a long one is a line that somebody drew through land where nobody lives.
        double lengthKm;
    };
    /// The nearest edge, of any shape but `except`, not farther away than `maxKm`; across the date line too.
    [[nodiscard]] std::optional<NearEdge> nearestEdge(double latitude, double longitude, double maxKm,
                                                      std::optional<std::uint16_t> except = {}) const;

    [[nodiscard]] static int columnOf(std::int32_t longitudeUnits);
    [[nodiscard]] static int rowOf(std::int32_t latitudeUnits);

private:
    [[nodiscard]] std::span<const GazetteerFormat::CellEntry> entriesOf(int row, int column) const;

    std::span<const GazetteerFormat::Vertex> m_vertices;
    std::span<const std::uint32_t> m_cellStarts;
    std::span<const GazetteerFormat::CellEntry> m_cellEntries;
    std::span<const std::uint32_t> m_edges;
};

} // namespace Analysis
