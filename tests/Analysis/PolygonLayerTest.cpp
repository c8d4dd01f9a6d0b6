// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/PolygonLayer.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace Analysis {
namespace {

using GazetteerFormat::CellEntry;
using GazetteerFormat::Vertex;

/// One triangle whose outline stays inside one cell: 10.1 to 10.4 degrees north and east.
class TrianglePolygonLayerTest : public testing::Test {
protected:
    TrianglePolygonLayerTest() {
        const std::size_t cells = static_cast<std::size_t>(PolygonLayer::columns) * PolygonLayer::rows;
        const auto cell = static_cast<std::size_t>(PolygonLayer::rowOf(1'010'000)) * PolygonLayer::columns +
                          static_cast<std::size_t>(PolygonLayer::columnOf(1'010'000));
        starts.assign(cell + 1, 0);
        starts.resize(cells + 1, 1);
    }

    // Half a degree's middle, 10.25, lies inside.
    std::vector<Vertex> vertices{
        {1'010'000, 1'010'000}, {1'040'000, 1'010'000}, {1'025'000, 1'040'000}, {1'010'000, 1'010'000}};
    std::vector<CellEntry> entries{{7, 1, 0, 3}};
    std::vector<std::uint32_t> edges{0, 1, 2};
    std::vector<std::uint32_t> starts;
    [[nodiscard]] PolygonLayer layer() const { return {vertices, starts, entries, edges}; }
};

TEST_F(TrianglePolygonLayerTest, KnowsWhichCellsAreEmpty) {
    EXPECT_FALSE(layer().isEmptyAround(10.45, 10.45));
    EXPECT_TRUE(layer().isEmptyAround(10.55, 10.45));
}

TEST_F(TrianglePolygonLayerTest, GoesOnToFurtherShapesThatHoldThePoint) {
    // Another shape of the same outline.
    entries.push_back({9, 1, 0, 3});
    for (std::size_t i = 0; i < starts.size(); ++i)
        starts[i] *= 2;
    EXPECT_EQ(layer().shapeAt(10.2, 10.25), 7);
    EXPECT_EQ(layer().shapeAt(10.2, 10.25, 8), 9);
    EXPECT_EQ(layer().shapeAt(10.2, 10.25, 10), std::nullopt);
}

TEST_F(TrianglePolygonLayerTest, TellsInsideFromOutside) {
    EXPECT_EQ(layer().shapeAt(10.2, 10.25), 7);
    EXPECT_EQ(layer().shapeAt(10.39, 10.25), 7);
    EXPECT_EQ(layer().shapeAt(10.101, 10.11), 7);
    EXPECT_EQ(layer().shapeAt(10.05, 10.25), std::nullopt);
    EXPECT_EQ(layer().shapeAt(10.3, 10.15), std::nullopt);
    EXPECT_EQ(layer().shapeAt(10.45, 10.25), std::nullopt);
    EXPECT_EQ(layer().shapeAt(50, 50), std::nullopt);
}

TEST_F(TrianglePolygonLayerTest, AgreesWithGeometryOnAGrid) {
    // Steps that also land on the vertices' own latitudes and longitudes.
    for (int row = 0; row <= 50; ++row) {
        for (int column = 0; column <= 50; ++column) {
            const double y = 10.0 + row * 0.01 + 0.000'02;
            const double x = 10.0 + column * 0.01 - 0.000'02;
            const bool inside = y > 10.1 && (y - 10.1) < 2 * (x - 10.1) && (y - 10.1) < 2 * (10.4 - x);
            EXPECT_EQ(layer().shapeAt(y, x).has_value(), inside && x < 10.5) << y << " " << x;
        }
    }
}

TEST_F(TrianglePolygonLayerTest, MeasuresTheWayToTheNearestEdge) {
    const auto south = layer().nearestEdge(10.0, 10.25, 50);
    ASSERT_TRUE(south);
    EXPECT_EQ(south->shape, 7);
    EXPECT_NEAR(south->distanceKm, 11.12, 0.05);
    EXPECT_NEAR(south->lengthKm, 0.3 * 111.2 * std::cos(10.1 * 3.14159265 / 180), 0.1);
    EXPECT_FALSE(layer().nearestEdge(10.0, 10.25, 11));
    EXPECT_FALSE(layer().nearestEdge(10.0, 10.25, 50, 7));
}

TEST_F(TrianglePolygonLayerTest, NoticesTablesThatLeadNowhere) {
    EXPECT_TRUE(layer().isConsistent());
    edges[1] = 3;
    EXPECT_FALSE(layer().isConsistent());
    edges[1] = 1;
    entries[0].edgeCount = 4;
    EXPECT_FALSE(layer().isConsistent());
    entries[0].edgeCount = 3;
    starts.pop_back();
    EXPECT_FALSE(layer().isConsistent());
}

TEST(PolygonLayerTest, SeesEdgesBeyondTheDateLine) {
    // A wall along 179.9° east, from 10° to 10.4° north.
    const std::vector<Vertex> vertices{{17'990'000, 1'000'100}, {17'990'000, 1'040'000}};
    const std::vector<CellEntry> entries{{0, 0, 0, 1}};
    const std::vector<std::uint32_t> edges{0};
    std::vector<std::uint32_t> starts(
        static_cast<std::size_t>(PolygonLayer::columns) * PolygonLayer::rows + 1, 1);
    const auto cell = static_cast<std::size_t>(PolygonLayer::rowOf(1'020'000)) * PolygonLayer::columns +
                      static_cast<std::size_t>(PolygonLayer::columnOf(17'990'000));
    std::fill(starts.begin(), starts.begin() + static_cast<std::ptrdiff_t>(cell) + 1, 0);
    const PolygonLayer layer(vertices, starts, entries, edges);
    const auto wall = layer.nearestEdge(10.2, -179.9, 30);
    ASSERT_TRUE(wall);
    EXPECT_NEAR(wall->distanceKm, 0.2 * 111.2 * std::cos(10.2 * 3.14159265 / 180), 0.05);
}

} // namespace
} // namespace Analysis
