// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QRect>
#include <optional>

namespace Grid {

/// Where the parts of a cell lie, and which of them a point is on.
struct CellAreas {
    enum class Part { tile, check, stack, approximate, missing, caption };

    /// Of round badges.
    static constexpr int badgeSide = 20;
    static constexpr int badgeInset = 8;
    /// How far rings reach beyond the tile.
    static constexpr int ringReach = 6;

    /// Which badges there are, beside the check that every photo has.
    struct Badges {
        /// Wide enough for its number; 0 for none.
        int stackWidth = 0;
        bool isApproximate = false;
        bool isMissing = false;
    };

    QRect tile;
    QRect caption;
    QRect check;
    // Empty where there is none.
    QRect stack;
    QRect approximate;
    QRect missing;

    /// `cell` is the tile with the caption's line under it.
    [[nodiscard]] static CellAreas of(const QRect& cell, const Badges& badges, bool isRightToLeft);

    /// Badges are easier to hit than they are large.
    [[nodiscard]] std::optional<Part> at(const QPoint& point) const;
};

} // namespace Grid
