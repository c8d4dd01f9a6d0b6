// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPainter>
#include <QPalette>
#include <QStyleOption>

/// The shapes that the style's controls are made of.
namespace Theme::Strokes {

inline constexpr qreal cornerRadius = 6;

/// What a control looks like: its fill, and the line around it.
struct Box {
    QColor fill;
    QColor line;
    /// In pixels of the layout.
    qreal lineWidth = 1;
};

/// Mixes `share` (0…1) of `over` into `under`.
[[nodiscard]] QColor mixed(const QColor& under, const QColor& over, double share);

void box(QPainter& painter, const QRectF& rect, const Box& box, qreal radius = cornerRadius);

/// The box of something that can be pressed, as the option's state says. An invalid `fill` is the palette's
/// button.
[[nodiscard]] Box pressable(const QStyleOption& option, const QColor& fill = {});

/// The box of something to type into.
[[nodiscard]] Box field(const QStyleOption& option);

/// The ring around what has the keyboard, just outside `rect`'s edge line.
void focusRing(QPainter& painter, const QRectF& rect, const QPalette& palette, qreal radius = cornerRadius);

enum class Direction { Up, Down };
void chevron(QPainter& painter, const QRectF& rect, Direction direction, const QColor& colour);
void tick(QPainter& painter, const QRectF& rect, const QColor& colour);

} // namespace Theme::Strokes
