// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Grid/FlowLayout.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QFont>
#include <QRect>
#include <optional>

class QPainter;

namespace Grid {

class Choice;
class PhotoListModel;
class TilePictures;

/// All that the grid shows at one moment.
struct GridScene {
    const PhotoListModel& photos;
    const FlowLayout& layout;
    const Choice& choice;
    TilePictures& pictures;
    Theme::Colours colours;
    QFont font;
    QRect viewport;
    /// Device pixels of one pixel.
    double ratio = 1;
    /// How far the content is scrolled.
    int offset = 0;
    // Rows, or -1.
    int focusedRow = -1;
    int hoveredRow = -1;
    int editedRow = -1;
    /// Where dragged photos would land.
    std::optional<FlowLayout::Slot> dropSlot;
    bool awaitsFiles = false;
    /// Drawn by the pointer, in the content's coordinates.
    std::optional<QRect> frame;
    bool isRightToLeft = false;
};

/// Paints what of it lies in an area of the viewport.
void paintGrid(QPainter& painter, const QRect& area, const GridScene& scene);

} // namespace Grid
