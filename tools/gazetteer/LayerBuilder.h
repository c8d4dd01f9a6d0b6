// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Tables.h"

#include <Analysis/PolygonLayer.h>

#include <cstdint>
#include <span>
#include <vector>

namespace GazetteerBuilder {

/// The tables of a `PolygonLayer`.
struct Layer {
    std::vector<Analysis::GazetteerFormat::Vertex> vertices;
    std::vector<std::uint32_t> cellStarts;
    std::vector<Analysis::GazetteerFormat::CellEntry> cellEntries;
    std::vector<std::uint32_t> edges;

    [[nodiscard]] Analysis::PolygonLayer view() const { return {vertices, cellStarts, cellEntries, edges}; }
};

/// The outlines of records that have a `shape`, in their order. Valid as long as the records.
template <typename Records>
[[nodiscard]] std::vector<const Shape*> outlines(const Records& records) {
    std::vector<const Shape*> result;
    for (const auto& record : records)
        result.push_back(&record.shape);
    return result;
}

/// The shapes are numbered in the order given.
[[nodiscard]] Layer buildLayer(std::span<const Shape* const> shapes);

/// The layer with only those cells that several shapes touch.
[[nodiscard]] Layer whereShapesMeet(const Layer& layer);

/// The ring with fewer vertices, none of which was farther than `tolerance` units from what stays (Douglas
/// and Peucker, 1973). Both ends stay.
[[nodiscard]] std::vector<Analysis::GazetteerFormat::Vertex>
simplified(const std::vector<Analysis::GazetteerFormat::Vertex>& ring, double tolerance);

} // namespace GazetteerBuilder
