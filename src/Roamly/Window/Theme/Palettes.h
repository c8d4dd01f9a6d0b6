// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QPalette>

namespace Theme {

enum class Scheme { Light, Dark };

/// Neutral greys, so that photos' colours are judged right, and one accent.
[[nodiscard]] QPalette palette(Scheme scheme, const QColor& accent);

/// The accent made dark (or, on dark grey, light) enough that text on it and lines of it are legible: at
/// least 4.5 : 1 between it and the text on it, 3 : 1 between it and the grey behind.
[[nodiscard]] QColor legibleAccent(const QColor& accent, Scheme scheme);

/// Black or white, whichever is read better on the colour.
[[nodiscard]] QColor textOn(const QColor& colour);

/// The contrast of two opaque colours as the Web Content Accessibility Guidelines 2 define it, 1 to 21.
[[nodiscard]] double contrast(const QColor& a, const QColor& b);

/// Where the desktop names no highlight colour.
[[nodiscard]] QColor defaultAccent();

} // namespace Theme
