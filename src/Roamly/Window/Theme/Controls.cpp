// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/Controls.h>
#include <Roamly/Window/Theme/Palettes.h>
#include <Roamly/Window/Theme/Strokes.h>
#include <Roamly/Window/Theme/Style.h>

#include <QAbstractSpinBox>
#include <QSlider>
#include <algorithm>

namespace Theme::Controls {

namespace {

constexpr int progressThickness = 6;
constexpr int sliderThickness = 4;

bool isDestructive(const QWidget* widget) {
    return widget && widget->property(destructiveProperty).toBool();
}

bool isPrimary(const QStyleOptionButton& button) {
    return button.features & QStyleOptionButton::DefaultButton;
}

bool showsFocus(const QStyleOption& option) {
    return (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange);
}

} // namespace

QColor buttonFill(const QStyleOptionButton& button, const QWidget* widget) {
    if (!(button.state & QStyle::State_Enabled))
        return {};
    if (isDestructive(widget))
        return colours(button.palette).danger;
    return isPrimary(button) ? button.palette.color(QPalette::Active, QPalette::Highlight) : QColor{};
}

void drawToolButton(const QStyleOption& option, QPainter& painter) {
    const QRectF rect{option.rect};
    if (option.state & (QStyle::State_MouseOver | QStyle::State_Sunken | QStyle::State_On)) {
        const bool isDown = option.state & (QStyle::State_Sunken | QStyle::State_On);
        const QColor fill = Strokes::mixed(option.palette.color(QPalette::Window),
                                           option.palette.color(QPalette::WindowText), isDown ? 0.16 : 0.08);
        Strokes::box(painter, rect, {.fill = fill, .line = {}});
    }
    if (showsFocus(option))
        Strokes::focusRing(painter, rect, option.palette);
}

void drawPushButton(const QStyleOptionButton& button, QPainter& painter, const QWidget* widget) {
    const QRectF rect{button.rect};
    const QColor fill = buttonFill(button, widget);
    const bool isFlatAtRest =
        (button.features & QStyleOptionButton::Flat) &&
        !(button.state & (QStyle::State_MouseOver | QStyle::State_Sunken | QStyle::State_On));
    if (!isFlatAtRest)
        Strokes::box(painter, rect, Strokes::pressable(button, fill));
    if (!showsFocus(button))
        return;
    if (fill.isValid())
        Strokes::box(painter, rect.adjusted(2, 2, -2, -2), {.fill = {}, .line = textOn(fill), .lineWidth = 1},
                     Strokes::cornerRadius - 2);
    else
        Strokes::focusRing(painter, rect, button.palette);
}

void drawIndicator(const QStyleOption& option, QPainter& painter, bool isRound) {
    const bool isOn = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const QRectF rect = QRectF{option.rect}.adjusted(1, 1, -1, -1);
    const qreal radius = isRound ? rect.width() / 2 : 4;
    const QColor accent = option.palette.color(
        option.state & QStyle::State_Enabled ? QPalette::Active : QPalette::Disabled, QPalette::Highlight);
    QStyleOption look = option;
    look.state &= ~QStyle::State_On;
    Strokes::box(painter, rect, isOn ? Strokes::pressable(look, accent) : Strokes::pressable(look), radius);
    const QColor mark = option.palette.color(QPalette::HighlightedText);
    if (option.state & QStyle::State_NoChange)
        Strokes::box(painter, QRectF{rect.center() - QPointF{4, 1}, QSizeF{8, 2}}, {.fill = mark, .line = {}},
                     1);
    else if (isOn && isRound)
        Strokes::box(painter, QRectF{rect.center() - QPointF{3, 3}, QSizeF{6, 6}}, {.fill = mark, .line = {}},
                     3);
    else if (isOn)
        Strokes::tick(painter, rect, mark);
}

void drawComboBox(const QStyleOptionComboBox& combo, QPainter& painter, const QRect& arrow) {
    QStyleOption option = combo;
    option.state &= ~QStyle::State_On;
    const QRectF rect{combo.rect};
    Strokes::box(painter, rect, combo.editable ? Strokes::field(option) : Strokes::pressable(option));
    if (!combo.editable && showsFocus(combo))
        Strokes::focusRing(painter, rect, combo.palette);
    Strokes::chevron(painter, arrow, Strokes::Direction::Down, combo.palette.color(QPalette::ButtonText));
}

void drawSpinBox(const QStyleOptionSpinBox& spin, QPainter& painter, const QRect& up, const QRect& down) {
    Strokes::box(painter, QRectF{spin.rect}, Strokes::field(spin));
    const auto ink = [&spin](QAbstractSpinBox::StepEnabledFlag step) {
        return spin.palette.color(spin.stepEnabled & step ? QPalette::Normal : QPalette::Disabled,
                                  QPalette::ButtonText);
    };
    Strokes::chevron(painter, QRectF{up}.translated(0, 1), Strokes::Direction::Up,
                     ink(QAbstractSpinBox::StepUpEnabled));
    Strokes::chevron(painter, QRectF{down}.translated(0, -1), Strokes::Direction::Down,
                     ink(QAbstractSpinBox::StepDownEnabled));
}

void drawSlider(const QStyleOptionSlider& slider, QPainter& painter, const QRect& handle) {
    const bool isLevel = slider.orientation == Qt::Horizontal;
    QRectF groove{slider.rect};
    if (isLevel)
        groove = QRectF{groove.left(), groove.center().y() - sliderThickness / 2.0, groove.width(),
                        sliderThickness};
    else
        groove = QRectF{groove.center().x() - sliderThickness / 2.0, groove.top(), sliderThickness,
                        groove.height()};
    const QPalette& palette = slider.palette;
    const qreal radius = sliderThickness / 2.0;
    Strokes::box(
        painter, groove,
        {.fill = Strokes::mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.2),
         .line = {}},
        radius);
    QRectF passed = groove;
    const QPointF middle = QRectF{handle}.center();
    if (!isLevel)
        slider.upsideDown ? passed.setTop(middle.y()) : passed.setBottom(middle.y());
    else
        slider.upsideDown ? passed.setLeft(middle.x()) : passed.setRight(middle.x());
    Strokes::box(painter, passed, {.fill = palette.color(QPalette::Highlight), .line = {}}, radius);
    const QRectF knob{middle - QPointF{7, 7}, QSizeF{14, 14}};
    Strokes::Box look = Strokes::pressable(slider);
    look.line = Strokes::mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.4);
    Strokes::box(painter, knob, look, 7);
    if (showsFocus(slider))
        Strokes::focusRing(painter, knob.adjusted(-2, -2, 2, 2), palette, 9);
}

void drawScrollBar(const QStyleOptionSlider& bar, QPainter& painter, const QRect& slider) {
    painter.fillRect(bar.rect, bar.palette.color(QPalette::Window));
    if (bar.minimum == bar.maximum)
        return;
    const bool isActive = bar.state & (QStyle::State_MouseOver | QStyle::State_Sunken);
    const QRectF knob = bar.orientation == Qt::Vertical ? QRectF{slider}.adjusted(3, 2, -3, -2)
                                                        : QRectF{slider}.adjusted(2, 3, -2, -3);
    Strokes::box(painter, knob,
                 {.fill = Strokes::mixed(bar.palette.color(QPalette::Window),
                                         bar.palette.color(QPalette::WindowText), isActive ? 0.5 : 0.28),
                  .line = {}},
                 std::min(knob.width(), knob.height()) / 2);
}

void drawProgress(const QStyleOptionProgressBar& bar, QPainter& painter) {
    QRectF groove{bar.rect};
    groove = QRectF{groove.left(), groove.center().y() - progressThickness / 2.0, groove.width(),
                    progressThickness};
    const QPalette& palette = bar.palette;
    const qreal radius = progressThickness / 2.0;
    Strokes::box(
        painter, groove,
        {.fill = Strokes::mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.14),
         .line = {}},
        radius);
    const int span = bar.maximum - bar.minimum;
    if (span <= 0 || bar.progress <= bar.minimum)
        return;
    const qreal share = static_cast<qreal>(bar.progress - bar.minimum) / span;
    QRectF done = groove;
    done.setWidth(std::max<qreal>(progressThickness, groove.width() * share));
    if (bar.direction == Qt::RightToLeft)
        done.moveRight(groove.right());
    Strokes::box(painter, done, {.fill = palette.color(QPalette::Highlight), .line = {}}, radius);
}

void drawItemPanel(const QStyleOptionViewItem& item, QPainter& painter) {
    const bool isSelected = item.state & QStyle::State_Selected;
    if (!isSelected && !(item.state & QStyle::State_MouseOver)) {
        if (item.backgroundBrush.style() != Qt::NoBrush)
            painter.fillRect(item.rect, item.backgroundBrush);
        return;
    }
    const QPalette::ColorGroup group =
        item.state & QStyle::State_Enabled ? QPalette::Active : QPalette::Disabled;
    const QColor fill = isSelected ? item.palette.color(group, QPalette::Highlight)
                                   : Strokes::mixed(item.palette.color(QPalette::Base),
                                                    item.palette.color(QPalette::WindowText), 0.06);
    // The items of a row make one bar together.
    const bool isAlone = item.viewItemPosition == QStyleOptionViewItem::OnlyOne ||
                         item.viewItemPosition == QStyleOptionViewItem::Invalid;
    if (isAlone)
        Strokes::box(painter, QRectF{item.rect}, {.fill = fill, .line = {}}, 4);
    else
        painter.fillRect(item.rect, fill);
}

void drawFocus(const QStyleOption& option, QPainter& painter) {
    const auto* const focus = qstyleoption_cast<const QStyleOptionFocusRect*>(&option);
    const bool isOnSelection = focus && focus->backgroundColor == option.palette.color(QPalette::Highlight);
    if ((option.state & QStyle::State_KeyboardFocusChange) && !isOnSelection)
        Strokes::focusRing(painter, QRectF{option.rect}, option.palette, 4);
}

void drawHeaderSection(const QStyleOption& header, QPainter& painter) {
    painter.fillRect(header.rect, header.palette.color(QPalette::Window));
    painter.fillRect(QRect{header.rect.left(), header.rect.bottom(), header.rect.width(), 1},
                     header.palette.color(QPalette::Midlight));
}

} // namespace Theme::Controls
