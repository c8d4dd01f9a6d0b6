// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace Theme {

/// An icon of Roamly's own family by its name ("import", "analyze", "play"…), in the colour of the palette's
/// text and at whatever device pixel ratio it is drawn; a null icon for an unknown name. GUI thread.
[[nodiscard]] QIcon icon(const QString& name);

/// The same in one colour, for surfaces whose text is not the palette's: a banner, a picture.
[[nodiscard]] QIcon icon(const QString& name, const QColor& colour);

/// The names of the family, in alphabetical order.
[[nodiscard]] QStringList iconNames();

/// The program's own icon, in full colour.
[[nodiscard]] QIcon programIcon();

} // namespace Theme
