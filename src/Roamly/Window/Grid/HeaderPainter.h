// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Grid/Sections.h>
#include <Roamly/Window/Theme/Colours.h>

class QFont;
class QPainter;
class QRect;

/// The headers of the grid's sections.
namespace Grid::HeaderPainter {

/// For the interface's font.
[[nodiscard]] int height(const QFont& font);
void paint(QPainter& painter, const QRect& area, const Section& section, const Theme::Colours& colours,
           const QFont& font, bool isRightToLeft);

} // namespace Grid::HeaderPainter
