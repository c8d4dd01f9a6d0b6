// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>
#include <Roamly/Window/Grid/CellAreas.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QFont>
#include <QPixmap>
#include <QRect>
#include <cstddef>

class QPainter;

namespace Grid {

/// What one cell shows.
struct CellContent {
    const ProjectModel::PhotoItem& photo;
    std::size_t groupSize = 0;
    /// As `TilePictures` draws it; null for a tile that waits for it.
    QPixmap picture;
    /// By the view's own selection.
    bool isChosen = false;
    /// The keyboard is on it.
    bool hasFocus = false;
    bool isHovered = false;
    /// Its caption is in an editor, which lies over the line.
    bool isEdited = false;
};

[[nodiscard]] CellAreas cellAreas(const QRect& cell, const ProjectModel::PhotoItem& photo,
                                  std::size_t groupSize, const QFont& font, bool isRightToLeft);

void paintCell(QPainter& painter, const QRect& cell, const CellContent& content,
               const Theme::Colours& colours, const QFont& font, bool isRightToLeft);

} // namespace Grid
