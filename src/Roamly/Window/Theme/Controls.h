// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPainter>
#include <QStyleOption>
#include <QWidget>

/// The style's controls, each drawn from its option and from where its parts lie.
namespace Theme::Controls {

/// What a push button is filled with; invalid for the plain ones.
[[nodiscard]] QColor buttonFill(const QStyleOptionButton& button, const QWidget* widget);

void drawPushButton(const QStyleOptionButton& button, QPainter& painter, const QWidget* widget);
/// A check box's mark, or a radio button's.
void drawIndicator(const QStyleOption& option, QPainter& painter, bool isRound);
void drawToolButton(const QStyleOption& option, QPainter& painter);
void drawComboBox(const QStyleOptionComboBox& combo, QPainter& painter, const QRect& arrow);
void drawSpinBox(const QStyleOptionSpinBox& spin, QPainter& painter, const QRect& up, const QRect& down);
void drawSlider(const QStyleOptionSlider& slider, QPainter& painter, const QRect& handle);
void drawScrollBar(const QStyleOptionSlider& bar, QPainter& painter, const QRect& slider);
/// Of a known length.
void drawProgress(const QStyleOptionProgressBar& bar, QPainter& painter);
/// What lies under an item of a list or of a table's row.
void drawItemPanel(const QStyleOptionViewItem& item, QPainter& painter);
/// Around a text that has the keyboard; a selected item is seen without it.
void drawFocus(const QStyleOption& option, QPainter& painter);
void drawHeaderSection(const QStyleOption& header, QPainter& painter);

} // namespace Theme::Controls
