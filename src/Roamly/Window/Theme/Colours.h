// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QPalette>

namespace Theme {

/// The window's colours, light or dark, as the palette in force says.
struct Colours {
    bool isDark = false;
    /// Behind the grid.
    QColor background;
    /// Bars, sheets and cells' tiles.
    QColor surface;
    QColor tile;
    QColor text;
    /// Less important text; at least 4.5 : 1 against the background.
    QColor quietText;
    QColor line;
    /// The desktop's highlight colour: what is selected, and the one primary button.
    QColor accent;
    QColor onAccent;
    /// The privacy banner and what destroys.
    QColor danger;
    QColor onDanger;
};

[[nodiscard]] Colours colours(const QPalette& palette);

} // namespace Theme
