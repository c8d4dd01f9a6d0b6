// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/PolygonLayer.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Analysis {

namespace {

using GazetteerFormat::CellEntry;
using GazetteerFormat::Vertex;

constexpr double kmPerDegree = 6371.0088 * std::numbers::pi / 180;

/// In half units, so that a cell's middle can lie where no vertex does.
struct Point {
    std::int64_t x;
    std::int64_t y;
};

Point doubled(const Vertex& vertex) {
    return {std::int64_t{vertex.longitude} * 2, std::int64_t{vertex.latitude} * 2};
}

/// Half a unit beside the exact middle: odd, hence never level with a vertex.
Point middleOf(int row, int column) {
    const auto middle = [](int cell, int first) {
        return (std::int64_t{cell} * PolygonLayer::unitsPerCell + PolygonLayer::unitsPerCell / 2 -
                std::int64_t{first} * PolygonLayer::unitsPerDegree) *
                   2 +
               1;
    };
    return {middle(column, 180), middle(row, 90)};
}

bool isLeft(const Point& a, const Point& b, const Point& p) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x) > 0;
}

/// Points on a line count as right of it, always, so that a line through a vertex crosses one of its two
/// edges.
bool crosses(const Point& from, const Point& to, const Point& a, const Point& b) {
    return isLeft(from, to, a) != isLeft(from, to, b) && isLeft(a, b, from) != isLeft(a, b, to);
}

/// Whether both ends lie on one side of a band: most edges of a cell can be left out so.
bool isBeside(std::int32_t a, std::int32_t b, std::int32_t low, std::int32_t high) {
    return (a < low && b < low) || (a > high && b > high);
}

std::int32_t units(double degrees) {
    return static_cast<std::int32_t>(std::lround(degrees * PolygonLayer::unitsPerDegree));
}

/// The square of the distance from the origin to the segment a b in the plane.
double squaredDistanceToSegment(double ax, double ay, double bx, double by) {
    const double dx = bx - ax;
    const double dy = by - ay;
    const double lengthSquared = dx * dx + dy * dy;
    const double t = lengthSquared > 0 ? std::clamp(-(ax * dx + ay * dy) / lengthSquared, 0.0, 1.0) : 0.0;
    const double x = ax + t * dx;
    const double y = ay + t * dy;
    return x * x + y * y;
}

} // namespace

int PolygonLayer::columnOf(std::int32_t longitudeUnits) {
    return std::clamp((longitudeUnits + 180 * unitsPerDegree) / unitsPerCell, 0, columns - 1);
}

int PolygonLayer::rowOf(std::int32_t latitudeUnits) {
    return std::clamp((latitudeUnits + 90 * unitsPerDegree) / unitsPerCell, 0, rows - 1);
}

bool PolygonLayer::isConsistent() const {
    if (m_cellStarts.size() != static_cast<std::size_t>(columns) * rows + 1 || m_cellStarts.front() != 0 ||
        m_cellStarts.back() != m_cellEntries.size() ||
        !std::is_sorted(m_cellStarts.begin(), m_cellStarts.end()))
        return false;
    const bool entriesFit =
        std::all_of(m_cellEntries.begin(), m_cellEntries.end(), [&](const CellEntry& entry) {
            return std::size_t{entry.firstEdge} + entry.edgeCount <= m_edges.size();
        });
    return entriesFit && std::all_of(m_edges.begin(), m_edges.end(), [&](std::uint32_t edge) {
               return std::size_t{edge} + 1 < m_vertices.size();
           });
}

std::span<const CellEntry> PolygonLayer::entriesOf(int row, int column) const {
    const std::size_t cell = static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column);
    return m_cellEntries.subspan(m_cellStarts[cell], m_cellStarts[cell + 1] - m_cellStarts[cell]);
}

bool PolygonLayer::isEmptyAround(double latitude, double longitude) const {
    return entriesOf(rowOf(units(latitude)), columnOf(units(longitude))).empty();
}

std::optional<std::uint16_t> PolygonLayer::shapeAt(double latitude, double longitude,
                                                   std::uint32_t first) const {
    const Vertex here{units(longitude), units(latitude)};
    const int row = rowOf(here.latitude);
    const int column = columnOf(here.longitude);
    const Point from = doubled(here);
    const Point to = middleOf(row, column);
    for (const CellEntry& entry : entriesOf(row, column)) {
        if (entry.shape < first)
            continue;
        bool inside = entry.containsMiddle != 0;
        for (const std::uint32_t edge : m_edges.subspan(entry.firstEdge, entry.edgeCount)) {
            if (crosses(from, to, doubled(m_vertices[edge]), doubled(m_vertices[edge + 1])))
                inside = !inside;
        }
        if (inside)
            return entry.shape;
    }
    return std::nullopt;
}

std::optional<PolygonLayer::NearEdge> PolygonLayer::nearestEdge(double latitude, double longitude,
                                                                double maxKm,
                                                                std::optional<std::uint16_t> except) const {
    // Meridians converge: near the poles a circle of a few kilometres spans many columns, up to all of them.
    const double reachLatitude = maxKm / kmPerDegree;
    const double widest = std::min(std::abs(latitude) + reachLatitude, 89.9) * std::numbers::pi / 180;
    const double reachLongitude = std::min(reachLatitude / std::cos(widest), 179.0);
    const double scale = std::cos(latitude * std::numbers::pi / 180);

    const int firstRow = rowOf(units(std::max(latitude - reachLatitude, -90.0)));
    const int lastRow = rowOf(units(std::min(latitude + reachLatitude, 90.0)));
    const int firstColumn = static_cast<int>(std::floor((longitude - reachLongitude + 180) * cellsPerDegree));
    const int lastColumn = static_cast<int>(std::floor((longitude + reachLongitude + 180) * cellsPerDegree));

    const std::int32_t south = units(latitude - reachLatitude) - 1;
    const std::int32_t north = units(latitude + reachLatitude) + 1;

    std::optional<NearEdge> nearest;
    double best = maxKm * maxKm;
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = firstColumn; column <= lastColumn; ++column) {
            const int wrapped = ((column % columns) + columns) % columns;
            // What lies beyond the date line is seen from where it would be without one.
            const double shift = column == wrapped ? 0 : column < wrapped ? -360 : 360;
            for (const CellEntry& entry : entriesOf(row, wrapped)) {
                if (entry.shape == except)
                    continue;
                for (const std::uint32_t edge : m_edges.subspan(entry.firstEdge, entry.edgeCount)) {
                    const auto x = [&](const Vertex& v) {
                        return (static_cast<double>(v.longitude) / unitsPerDegree + shift - longitude) *
                               scale * kmPerDegree;
                    };
                    const auto y = [&](const Vertex& v) {
                        return (static_cast<double>(v.latitude) / unitsPerDegree - latitude) * kmPerDegree;
                    };
                    const Vertex& a = m_vertices[edge];
                    const Vertex& b = m_vertices[edge + 1];
                    if (isBeside(a.latitude, b.latitude, south, north))
                        continue;
                    const double squared = squaredDistanceToSegment(x(a), y(a), x(b), y(b));
                    if (squared <= best) {
                        best = squared;
                        nearest =
                            NearEdge{entry.shape, std::sqrt(squared), std::hypot(x(b) - x(a), y(b) - y(a))};
                    }
                }
            }
        }
    }
    return nearest;
}

} // namespace Analysis
