// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/CellAreas.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using Grid::CellAreas;
using Part = CellAreas::Part;

constexpr CellAreas::Badges allBadges{.stackWidth = 40, .isApproximate = true, .isMissing = true};

TEST(CellAreas, BadgesLieOnTheTileAndNeverOnEachOther) {
    for (const int side : {96, 100, 128, 192, 400}) {
        for (const bool isRightToLeft : {false, true}) {
            const CellAreas areas = CellAreas::of({50, 70, side, side + 24}, allBadges, isRightToLeft);
            const std::vector<QRect> badges{areas.check, areas.stack, areas.approximate, areas.missing};
            for (std::size_t one = 0; one < badges.size(); ++one) {
                EXPECT_TRUE(areas.tile.contains(badges[one]));
                for (std::size_t other = 0; other < one; ++other)
                    EXPECT_FALSE(badges[one].intersects(badges[other])) << side;
            }
            EXPECT_FALSE(areas.tile.intersects(areas.caption));
        }
    }
}

TEST(CellAreas, AreMirroredWhereTheInterfaceIs) {
    const CellAreas left = CellAreas::of({0, 0, 200, 224}, allBadges, false);
    const CellAreas right = CellAreas::of({0, 0, 200, 224}, allBadges, true);
    EXPECT_EQ(left.check.left(), CellAreas::badgeInset);
    EXPECT_EQ(right.check.right(), 199 - CellAreas::badgeInset);
    EXPECT_EQ(right.stack.left(), CellAreas::badgeInset);
}

TEST(CellAreas, TellWhatAPointIsOn) {
    const CellAreas areas = CellAreas::of({0, 0, 200, 224}, allBadges, false);
    EXPECT_EQ(areas.at(areas.check.center()), Part::check);
    EXPECT_EQ(areas.at(areas.check.topLeft() - QPoint{2, 2}), Part::check);
    EXPECT_EQ(areas.at(areas.stack.center()), Part::stack);
    EXPECT_EQ(areas.at({100, 100}), Part::tile);
    EXPECT_EQ(areas.at({100, 215}), Part::caption);
    EXPECT_EQ(areas.at({300, 100}), std::nullopt);
    const CellAreas plain = CellAreas::of({0, 0, 200, 224}, {}, false);
    EXPECT_EQ(plain.at(areas.stack.center()), Part::tile);
}

} // namespace
