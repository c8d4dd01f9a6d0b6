// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Theme/Palettes.h>

#include <QApplication>

namespace Theme {

/// Gives the application its style, its colours and its icon, light or dark as the desktop wishes, and
/// follows the desktop from then on. Once, before the first window; waits for nothing. GUI thread.
void apply(QApplication& application);

/// The same, fixed: for pictures and tests. May be called again.
void apply(QApplication& application, Scheme scheme, const QColor& accent = defaultAccent());

} // namespace Theme
