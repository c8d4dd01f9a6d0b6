// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/CellAreas.h>

#include <array>
#include <utility>

namespace Grid {

CellAreas CellAreas::of(const QRect& cell, const Badges& badges, bool isRightToLeft) {
    CellAreas areas;
    const int side = cell.width();
    areas.tile = {cell.topLeft(), QSize{side, side}};
    areas.caption = {cell.left(), areas.tile.bottom() + 1 + 4, side, cell.height() - side - 4};

    const auto mirrored = [&](QRect rect) {
        if (isRightToLeft)
            rect.moveRight(areas.tile.left() + areas.tile.right() - rect.left());
        return rect;
    };
    const int top = areas.tile.top() + badgeInset;
    areas.check = mirrored({areas.tile.left() + badgeInset, top, badgeSide, badgeSide});
    // The others line up from the far corner.
    int right = areas.tile.right() + 1 - badgeInset;
    const auto placed = [&](int width) {
        right -= width;
        const QRect rect = mirrored({right, top, width, badgeSide});
        right -= 4;
        return rect;
    };
    if (badges.stackWidth > 0)
        areas.stack = placed(badges.stackWidth);
    const int bottom = areas.tile.bottom() + 1 - badgeInset - badgeSide;
    if (badges.isApproximate) {
        // On small tiles there is no room left beside the check.
        const bool hasRoom = right - badgeSide >= areas.tile.left() + badgeInset + badgeSide + 4;
        areas.approximate =
            hasRoom
                ? placed(badgeSide)
                : mirrored({areas.tile.right() + 1 - badgeInset - badgeSide, bottom, badgeSide, badgeSide});
    }
    if (badges.isMissing)
        areas.missing = mirrored({areas.tile.left() + badgeInset, bottom, badgeSide, badgeSide});
    return areas;
}

std::optional<CellAreas::Part> CellAreas::at(const QPoint& point) const {
    const std::array<std::pair<QRect, Part>, 4> badges{{{check, Part::check},
                                                        {stack, Part::stack},
                                                        {approximate, Part::approximate},
                                                        {missing, Part::missing}}};
    for (const auto& [rect, part] : badges) {
        if (!rect.isEmpty() && rect.adjusted(-2, -2, 2, 2).contains(point))
            return part;
    }
    if (tile.contains(point))
        return Part::tile;
    if (caption.contains(point))
        return Part::caption;
    return std::nullopt;
}

} // namespace Grid
