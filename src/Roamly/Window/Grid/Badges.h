// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QRect>
#include <cstddef>

class QColor;
class QPainter;

/// The small marks on a photo. They carry a dark edge and a light sign, so that they can be read on snow and
/// on night alike.
namespace Grid::Badges {

/// A filled circle with a check for a photo of the film, an empty one for a photo left out.
void paintCheck(QPainter& painter, const QRect& area, bool isInTheFilm, const QColor& accent,
                const QColor& onAccent);
/// Stacked sheets and the group's number of photos.
void paintStack(QPainter& painter, const QRect& area, std::size_t count, const QFont& font);
/// How wide `paintStack` wants to be.
[[nodiscard]] int stackWidth(std::size_t count, const QFont& font);
/// "≈"
void paintApproximate(QPainter& painter, const QRect& area);
/// "!"
void paintMissing(QPainter& painter, const QRect& area);

} // namespace Grid::Badges
