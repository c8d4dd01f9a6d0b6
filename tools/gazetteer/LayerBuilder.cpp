// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LayerBuilder.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>
#include <utility>

namespace GazetteerBuilder {

namespace {

using Analysis::PolygonLayer;
using Analysis::GazetteerFormat::CellEntry;
using Analysis::GazetteerFormat::Vertex;

/// What one shape contributes to one cell.
struct Part {
    std::uint16_t shape = 0;
    bool containsMiddle = false;
    std::vector<std::uint32_t> edges;
};

using Cells = std::vector<std::vector<Part>>;

Part& partOf(Cells& cells, int row, int column, std::uint16_t shape) {
    auto& parts =
        cells[static_cast<std::size_t>(row) * PolygonLayer::columns + static_cast<std::size_t>(column)];
    if (parts.empty() || parts.back().shape != shape)
        parts.push_back({shape, false, {}});
    return parts.back();
}

double latitudeOfRow(int row) {
    return double{static_cast<double>(row)} * PolygonLayer::unitsPerCell -
           90.0 * PolygonLayer::unitsPerDegree;
}

double longitudeAt(const Vertex& a, const Vertex& b, double latitude) {
    const double t = (latitude - a.latitude) / (static_cast<double>(b.latitude) - a.latitude);
    return a.longitude + t * (static_cast<double>(b.longitude) - a.longitude);
}

/// Enters the edge into each cell that it touches.
void enterEdge(Cells& cells, std::uint16_t shape, std::uint32_t edge, const Vertex& a, const Vertex& b) {
    const auto [low, high] = std::minmax(a.latitude, b.latitude);
    // One unit of margin on every side: an edge too many does no harm, a missing one does.
    for (int row = PolygonLayer::rowOf(low - 1); row <= PolygonLayer::rowOf(high + 1); ++row) {
        double west = std::min(a.longitude, b.longitude);
        double east = std::max(a.longitude, b.longitude);
        if (low != high) {
            const double bottom = std::clamp(latitudeOfRow(row), double(low), double(high));
            const double top = std::clamp(latitudeOfRow(row + 1), double(low), double(high));
            std::tie(west, east) = std::minmax({longitudeAt(a, b, bottom), longitudeAt(a, b, top)});
        }
        const int first = PolygonLayer::columnOf(static_cast<std::int32_t>(std::floor(west)) - 1);
        const int last = PolygonLayer::columnOf(static_cast<std::int32_t>(std::ceil(east)) + 1);
        for (int column = first; column <= last; ++column)
            partOf(cells, row, column, shape).edges.push_back(edge);
    }
}

/// The crossings of the outline with the level of the middles of each row, half a unit off the exact middle.
void collectCrossings(std::map<int, std::vector<double>>& crossings, const Vertex& a, const Vertex& b) {
    const auto [low, high] = std::minmax(a.latitude, b.latitude);
    for (int row = PolygonLayer::rowOf(low); row <= PolygonLayer::rowOf(high); ++row) {
        const double level = latitudeOfRow(row) + PolygonLayer::unitsPerCell / 2.0 + 0.5;
        if (low < level && level < high)
            crossings[row].push_back(longitudeAt(a, b, level));
    }
}

void markMiddles(Cells& cells, std::uint16_t shape, std::map<int, std::vector<double>>& crossings) {
    for (auto& [row, longitudes] : crossings) {
        std::sort(longitudes.begin(), longitudes.end());
        for (std::size_t i = 0; i + 1 < longitudes.size(); i += 2) {
            const double origin =
                180.0 * PolygonLayer::unitsPerDegree - PolygonLayer::unitsPerCell / 2.0 - 0.5;
            const int first =
                static_cast<int>(std::ceil((longitudes[i] + origin) / PolygonLayer::unitsPerCell));
            const int last =
                static_cast<int>(std::floor((longitudes[i + 1] + origin) / PolygonLayer::unitsPerCell));
            for (int column = std::max(first, 0); column <= std::min(last, PolygonLayer::columns - 1);
                 ++column)
                partOf(cells, row, column, shape).containsMiddle = true;
        }
    }
}

} // namespace

Layer buildLayer(std::span<const Shape* const> shapes) {
    if (shapes.size() >= Analysis::GazetteerFormat::none)
        throw std::runtime_error("too many shapes");
    Layer layer;
    Cells cells(static_cast<std::size_t>(PolygonLayer::columns) * PolygonLayer::rows);
    for (std::size_t number = 0; number < shapes.size(); ++number) {
        const auto shape = static_cast<std::uint16_t>(number);
        std::map<int, std::vector<double>> crossings;
        for (const auto& ring : shapes[number]->rings) {
            const auto first = static_cast<std::uint32_t>(layer.vertices.size());
            layer.vertices.insert(layer.vertices.end(), ring.begin(), ring.end());
            for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
                enterEdge(cells, shape, first + static_cast<std::uint32_t>(i), ring[i], ring[i + 1]);
                collectCrossings(crossings, ring[i], ring[i + 1]);
            }
        }
        markMiddles(cells, shape, crossings);
    }

    for (const auto& parts : cells) {
        layer.cellStarts.push_back(static_cast<std::uint32_t>(layer.cellEntries.size()));
        for (const Part& part : parts) {
            layer.cellEntries.push_back({part.shape, static_cast<std::uint16_t>(part.containsMiddle ? 1 : 0),
                                         static_cast<std::uint32_t>(layer.edges.size()),
                                         static_cast<std::uint32_t>(part.edges.size())});
            layer.edges.insert(layer.edges.end(), part.edges.begin(), part.edges.end());
        }
    }
    layer.cellStarts.push_back(static_cast<std::uint32_t>(layer.cellEntries.size()));
    return layer;
}

Layer whereShapesMeet(const Layer& layer) {
    Layer result;
    const auto entriesOf = [&](std::size_t cell) {
        const auto entries =
            std::span(layer.cellEntries)
                .subspan(layer.cellStarts[cell], layer.cellStarts[cell + 1] - layer.cellStarts[cell]);
        return entries.size() > 1 ? entries : std::span<const CellEntry>();
    };
    const auto edgesOf = [&](const CellEntry& entry) {
        return std::span(layer.edges).subspan(entry.firstEdge, entry.edgeCount);
    };

    const std::size_t cells = layer.cellStarts.size() - 1;
    std::vector<bool> isUsed(layer.vertices.size(), false);
    for (std::size_t cell = 0; cell < cells; ++cell) {
        for (const CellEntry& entry : entriesOf(cell)) {
            for (const std::uint32_t edge : edgesOf(entry))
                isUsed[edge] = isUsed[edge + 1] = true;
        }
    }
    // Both ends of an edge stay, hence stay neighbours.
    std::vector<std::uint32_t> numbers(layer.vertices.size());
    for (std::size_t i = 0; i < layer.vertices.size(); ++i) {
        numbers[i] = static_cast<std::uint32_t>(result.vertices.size());
        if (isUsed[i])
            result.vertices.push_back(layer.vertices[i]);
    }
    for (std::size_t cell = 0; cell < cells; ++cell) {
        result.cellStarts.push_back(static_cast<std::uint32_t>(result.cellEntries.size()));
        for (CellEntry entry : entriesOf(cell)) {
            const auto edges = edgesOf(entry);
            entry.firstEdge = static_cast<std::uint32_t>(result.edges.size());
            for (const std::uint32_t edge : edges)
                result.edges.push_back(numbers[edge]);
            result.cellEntries.push_back(entry);
        }
    }
    result.cellStarts.push_back(static_cast<std::uint32_t>(result.cellEntries.size()));
    return result;
}

std::vector<Vertex> simplified(const std::vector<Vertex>& ring, double tolerance) {
    if (ring.size() < 5)
        return ring;
    std::vector<bool> stays(ring.size(), false);
    stays.front() = stays.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> pending{{0, ring.size() - 1}};
    while (!pending.empty()) {
        const auto [first, last] = pending.back();
        pending.pop_back();
        double farthest = tolerance;
        std::size_t at = 0;
        // Degrees of longitude are shorter than those of latitude.
        const double scale =
            std::cos(ring[first].latitude / double{PolygonLayer::unitsPerDegree} * 3.14159265358979 / 180);
        const double dx = (double(ring[last].longitude) - ring[first].longitude) * scale;
        const double dy = double(ring[last].latitude) - ring[first].latitude;
        const double squared = dx * dx + dy * dy;
        for (std::size_t i = first + 1; i < last; ++i) {
            const double px = (double(ring[i].longitude) - ring[first].longitude) * scale;
            const double py = double(ring[i].latitude) - ring[first].latitude;
            const double t = squared > 0 ? std::clamp((px * dx + py * dy) / squared, 0.0, 1.0) : 0.0;
            const double distance = std::hypot(px - t * dx, py - t * dy);
            if (distance > farthest) {
                farthest = distance;
                at = i;
            }
        }
        if (at != 0) {
            stays[at] = true;
            pending.emplace_back(first, at);
            pending.emplace_back(at, last);
        }
    }
    std::vector<Vertex> result;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        if (stays[i])
            result.push_back(ring[i]);
    }
    // A ring that has become a line would hold nothing.
    return result.size() < 4 ? ring : result;
}

} // namespace GazetteerBuilder
