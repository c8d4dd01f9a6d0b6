// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Colours.h>

namespace Theme {

Colours colours(const QPalette& palette) {
    Colours result;
    result.isDark = palette.color(QPalette::Window).lightness() < 128;
    result.background = result.isDark ? QColor{0x1f, 0x1f, 0x1f} : QColor{0xf5, 0xf5, 0xf5};
    result.surface = result.isDark ? QColor{0x2a, 0x2a, 0x2a} : QColor{0xff, 0xff, 0xff};
    result.tile = result.isDark ? QColor{0x2c, 0x2c, 0x2c} : QColor{0xe9, 0xe9, 0xe9};
    result.text = result.isDark ? QColor{0xf0, 0xf0, 0xf0} : QColor{0x1c, 0x1c, 0x1c};
    result.quietText = result.isDark ? QColor{0xa8, 0xa8, 0xa8} : QColor{0x5c, 0x5c, 0x5c};
    result.line = result.isDark ? QColor{0x3d, 0x3d, 0x3d} : QColor{0xd6, 0xd6, 0xd6};
    result.accent = palette.color(QPalette::Highlight);
    result.onAccent = palette.color(QPalette::HighlightedText);
    result.danger = result.isDark ? QColor{0xd8, 0x3b, 0x3b} : QColor{0xb8, 0x1d, 0x1d};
    result.onDanger = Qt::white;
    return result;
}

} // namespace Theme
