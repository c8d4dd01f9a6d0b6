// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Controls.h>
#include <Roamly/Window/Theme/Palettes.h>
#include <Roamly/Window/Theme/Strokes.h>
#include <Roamly/Window/Theme/Style.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPainter>
#include <QScrollBar>
#include <QSlider>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>

namespace Theme {

namespace {

constexpr int controlHeight = 32;
constexpr int rowHeight = 32;
/// Between a control's edge and its text.
constexpr int textPadding = 8;
constexpr int pushButtonWidth = 88;
constexpr int indicatorSize = 18;
constexpr int sliderHandle = 16;
constexpr int menuArrowWidth = 16;

/// All of it, not a part of its own beside it.
bool opensMenu(const QStyleOptionToolButton& button) {
    return (button.features & QStyleOptionToolButton::HasMenu) &&
           !(button.features & QStyleOptionToolButton::MenuButtonPopup);
}

} // namespace

Style::Style()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void Style::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QScrollBar*>(widget) || qobject_cast<QSlider*>(widget) ||
        qobject_cast<QComboBox*>(widget))
        widget->setAttribute(Qt::WA_Hover);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
    switch (element) {
    case PE_PanelButtonCommand:
        if (const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option))
            return Controls::drawPushButton(*button, *painter, widget);
        break;
    case PE_FrameDefaultButton:
        return;
    case PE_PanelButtonTool:
        return Controls::drawToolButton(*option, *painter);
    case PE_PanelLineEdit:
        if (const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->lineWidth > 0)
            return Strokes::box(*painter, QRectF{option->rect}, Strokes::field(*option));
        break;
    case PE_FrameLineEdit:
        return;
    case PE_FrameFocusRect:
        return Controls::drawFocus(*option, *painter);
    case PE_PanelItemViewRow:
        // Each item draws its own part.
        return;
    case PE_PanelItemViewItem:
        if (const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(option))
            return Controls::drawItemPanel(*item, *painter);
        break;
    case PE_IndicatorCheckBox:
        return Controls::drawIndicator(*option, *painter, false);
    case PE_IndicatorRadioButton:
        return Controls::drawIndicator(*option, *painter, true);
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
    if (element == CE_PushButtonLabel) {
        if (const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton label = *button;
            if (const QColor fill = Controls::buttonFill(label, widget); fill.isValid())
                for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
                    label.palette.setColor(group, QPalette::ButtonText, textOn(fill));
            return QProxyStyle::drawControl(element, &label, painter, widget);
        }
    }
    if (element == CE_HeaderSection || element == CE_HeaderEmptyArea)
        return Controls::drawHeaderSection(*option, *painter);
    if (const auto* const bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option)) {
        if (element == CE_ProgressBarGroove || element == CE_ProgressBarLabel)
            return;
        // Of an unknown length: Fusion's own moving bar.
        if (element == CE_ProgressBarContents && bar->maximum > bar->minimum)
            return Controls::drawProgress(*bar, *painter);
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
    if (const auto* const combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        combo && combo->frame)
        return Controls::drawComboBox(*combo, *painter,
                                      proxy()->subControlRect(control, option, SC_ComboBoxArrow, widget));
    if (const auto* const spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option); spin && spin->frame)
        return Controls::drawSpinBox(*spin, *painter,
                                     proxy()->subControlRect(control, option, SC_SpinBoxUp, widget),
                                     proxy()->subControlRect(control, option, SC_SpinBoxDown, widget));
    if (const auto* const button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
        button && opensMenu(*button)) {
        QStyleOptionToolButton plain = *button;
        plain.features.setFlag(QStyleOptionToolButton::HasMenu, false);
        QProxyStyle::drawComplexControl(control, &plain, painter, widget);
        const QRect end{button->rect.right() - menuArrowWidth - textPadding, button->rect.top(),
                        menuArrowWidth, button->rect.height()};
        return Strokes::chevron(*painter, visualRect(button->direction, button->rect, end),
                                Strokes::Direction::Down, button->palette.color(QPalette::ButtonText));
    }
    if (const auto* const slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
        if (control == CC_Slider && slider->tickPosition == QSlider::NoTicks)
            return Controls::drawSlider(*slider, *painter,
                                        proxy()->subControlRect(control, option, SC_SliderHandle, widget));
        if (control == CC_ScrollBar)
            return Controls::drawScrollBar(
                *slider, *painter, proxy()->subControlRect(control, option, SC_ScrollBarSlider, widget));
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    // A field inside another control has no frame, and its padding from that control.
    if (element == SE_LineEditContents && frame && frame->lineWidth > 0)
        return rect.adjusted(textPadding - 4, 0, 4 - textPadding, 0);
    return rect;
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                            const QWidget* widget) const {
    const QRect rect = QProxyStyle::subControlRect(control, option, subControl, widget);
    const bool isText = (control == CC_ComboBox && subControl == SC_ComboBoxEditField) ||
                        (control == CC_SpinBox && subControl == SC_SpinBoxEditField);
    if (!isText)
        return rect;
    return option->direction == Qt::RightToLeft ? rect.adjusted(0, 0, -4, 0) : rect.adjusted(4, 0, 0, 0);
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_PushButton:
        result.rwidth() += 2 * textPadding;
        return result.expandedTo({pushButtonWidth, controlHeight});
    case CT_ComboBox:
    case CT_LineEdit:
        result.rwidth() += textPadding;
        return result.expandedTo({0, controlHeight});
    case CT_ToolButton:
        if (const auto* const button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
            button && opensMenu(*button))
            result.rwidth() += menuArrowWidth;
        return result;
    case CT_SpinBox:
        result.setHeight(std::max(controlHeight, result.height() - 4));
        return result;
    case CT_ItemViewItem:
    case CT_HeaderSection:
        return result.expandedTo({0, rowHeight});
    case CT_MenuItem:
        if (const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
            item && item->menuItemType != QStyleOptionMenuItem::Separator)
            return result.expandedTo({0, 28});
        return result;
    default:
        return result;
    }
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return indicatorSize;
    case PM_SliderThickness:
    case PM_SliderControlThickness:
    case PM_SliderLength:
        return sliderHandle + 2;
    case PM_ScrollBarExtent:
        return 12;
    case PM_FocusFrameHMargin:
        return 5;
    case PM_HeaderMargin:
        return 6;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
    case PM_CheckBoxLabelSpacing:
        return 8;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
        return 16;
    case PM_ToolBarIconSize:
        return 24;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const {
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_ComboBox_Popup:
        return 0;
    case SH_DialogButtonLayout:
        return QDialogButtonBox::GnomeLayout;
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

} // namespace Theme
