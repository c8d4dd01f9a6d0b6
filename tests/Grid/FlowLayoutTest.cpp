// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/FlowLayout.h>

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace {

using Grid::FlowLayout;
using Grid::Section;
using Slot = FlowLayout::Slot;

/// Four columns of tiles of 100, lines of 136 with their gap.
FlowLayout layoutOf(const std::vector<std::size_t>& counts, bool isRightToLeft = false) {
    std::vector<Section> sections;
    std::size_t first = 0;
    for (const std::size_t count : counts) {
        sections.push_back({first, count, {}, {}});
        first += count;
    }
    return {sections,
            {.width = 4 * 100 + 3 * FlowLayout::gap + 2 * FlowLayout::margin,
             .tileSide = 100,
             .captionHeight = 24,
             .headerHeight = 48,
             .isRightToLeft = isRightToLeft}};
}

TEST(FlowLayout, TilesFillTheLineAndSectionsBeginNewOnes) {
    const FlowLayout layout = layoutOf({5, 2});
    EXPECT_EQ(layout.columns(), 4);
    EXPECT_EQ(layout.cell(0), (QRect{16, 48, 100, 124}));
    EXPECT_EQ(layout.cell(3), (QRect{352, 48, 100, 124}));
    EXPECT_EQ(layout.cell(4), (QRect{16, 184, 100, 124}));
    EXPECT_EQ(layout.header(1).top(), 320);
    EXPECT_EQ(layout.cell(5), (QRect{16, 368, 100, 124}));
    EXPECT_EQ(layout.contentHeight(), 368 + 124 + 16);
    EXPECT_TRUE(layout.cell(7).isEmpty());
}

TEST(FlowLayout, RunsFromTheRightWhereTheInterfaceDoes) {
    const FlowLayout layout = layoutOf({5}, true);
    EXPECT_EQ(layout.cell(0).left(), 352);
    EXPECT_EQ(layout.cell(3).left(), 16);
    EXPECT_EQ(layout.rowAt({360, 60}), 0);
}

TEST(FlowLayout, EveryRowIsFoundAtItsOwnCellAndNoneBetween) {
    const FlowLayout layout = layoutOf({5, 2, 9});
    for (int row = 0; row < layout.rowCount(); ++row) {
        EXPECT_EQ(layout.rowAt(layout.cell(row).topLeft()), row);
        EXPECT_EQ(layout.rowAt(layout.cell(row).bottomRight()), row);
    }
    EXPECT_EQ(layout.rowAt(layout.cell(0).topRight() + QPoint{1, 0}), std::nullopt);
    EXPECT_EQ(layout.rowAt(layout.cell(0).bottomLeft() + QPoint{0, 1}), std::nullopt);
    EXPECT_EQ(layout.rowAt(layout.header(1).center()), std::nullopt);
}

TEST(FlowLayout, RowsOfARectangleAreThoseWhoseCellsTouchIt) {
    const FlowLayout layout = layoutOf({5, 2, 9, 4});
    for (int x = 0; x < 480; x += 53) {
        for (int y = 0; y < layout.contentHeight(); y += 71) {
            const QRect rectangle{x, y, 150, 300};
            std::set<int> expected;
            for (int row = 0; row < layout.rowCount(); ++row) {
                if (layout.cell(row).intersects(rectangle))
                    expected.insert(row);
            }
            std::set<int> found;
            for (const auto& [first, last] : layout.rowsIn(rectangle)) {
                for (int row = first; row <= last; ++row)
                    found.insert(row);
            }
            ASSERT_EQ(found, expected) << x << " " << y;
        }
    }
}

TEST(FlowLayout, TheStickyHeaderIsPushedAwayByTheNext) {
    const FlowLayout layout = layoutOf({5, 2});
    EXPECT_EQ(layout.stickyHeader(100)->section, 0);
    EXPECT_EQ(layout.stickyHeader(100)->area.top(), 0);
    EXPECT_EQ(layout.stickyHeader(310)->section, 0);
    EXPECT_EQ(layout.stickyHeader(310)->area.bottom(), 9);
    EXPECT_EQ(layout.stickyHeader(320)->section, 1);
    EXPECT_FALSE(FlowLayout{}.stickyHeader(0));
}

TEST(FlowLayout, UpAndDownKeepTheColumnAcrossSections) {
    const FlowLayout layout = layoutOf({5, 2, 9});
    EXPECT_EQ(layout.rowAcross(2, 1), 4);
    EXPECT_EQ(layout.rowAcross(4, 1), 5);
    EXPECT_EQ(layout.rowAcross(6, 1), 8);
    EXPECT_EQ(layout.rowAcross(8, -1), 6);
    EXPECT_EQ(layout.rowAcross(6, -1), 4);
    EXPECT_EQ(layout.rowAcross(0, -1), 0);
    EXPECT_EQ(layout.rowAcross(13, 5), 15);
}

TEST(FlowLayout, ThingsLandBesideTheNearestPhoto) {
    const FlowLayout layout = layoutOf({5, 2});
    const auto slot = [&](int row, int dx) {
        return layout.slotAt(layout.cell(row).center() + QPoint{dx, 0});
    };
    EXPECT_EQ(slot(1, -20), (Slot{1, false}));
    EXPECT_EQ(slot(1, 20), (Slot{2, false}));
    EXPECT_EQ(slot(3, 20), (Slot{3, true}));
    EXPECT_EQ(slot(4, 20), (Slot{4, true}));
    EXPECT_EQ(layout.slotAt({300, 200}), (Slot{4, true}));
    EXPECT_EQ(layout.slotAt({20, 100000}), (Slot{5, false}));
    EXPECT_EQ(FlowLayout{}.slotAt({0, 0}), std::nullopt);
}

} // namespace
