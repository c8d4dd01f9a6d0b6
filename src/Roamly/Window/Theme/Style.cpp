#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/Palettes.h>
#include <Roamly/Window/Theme/Strokes.h>
#include <Roamly/Window/Theme/Style.h>

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPainter>
#include <QPushButton>
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
constexpr int progressThickness = 6;
constexpr int sliderThickness = 4;
constexpr int sliderHandle = 16;

bool isDestructive(const QWidget* widget) {
    return widget && widget->property(destructiveProperty).toBool();
}

bool isPrimary(const QStyleOptionButton& button) {
    return button.features & QStyleOptionButton::DefaultButton;
}

/// What a push button is filled with; invalid for the plain ones.
QColor buttonFill(const QStyleOptionButton& button, const QWidget* widget) {
    if (!(button.state & QStyle::State_Enabled))
        return {};
    if (isDestructive(widget))
        return colours(button.palette).danger;
    return isPrimary(button) ? button.palette.color(QPalette::Active, QPalette::Highlight) : QColor{};
}

bool showsFocus(const QStyleOption& option) {
    return (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange);
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

/// What lies under an item of a list or of a table's row.
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

/// Around a text that has the keyboard; a selected item is seen without it.
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
            return drawPushButton(*button, *painter, widget);
        break;
    case PE_FrameDefaultButton:
        return;
    case PE_PanelButtonTool:
        if (option->state & (State_MouseOver | State_Sunken | State_On)) {
            Strokes::Box look = Strokes::pressable(*option);
            look.line = {};
            look.fill = Strokes::mixed(option->palette.color(QPalette::Window),
                                       option->palette.color(QPalette::WindowText),
                                       option->state & (State_Sunken | State_On) ? 0.16 : 0.08);
            Strokes::box(*painter, QRectF{option->rect}, look);
        }
        if (showsFocus(*option))
            Strokes::focusRing(*painter, QRectF{option->rect}, option->palette);
        return;
    case PE_PanelLineEdit:
        if (const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->lineWidth > 0)
            return Strokes::box(*painter, QRectF{option->rect}, Strokes::field(*option));
        break;
    case PE_FrameLineEdit:
        return;
    case PE_FrameFocusRect:
        return drawFocus(*option, *painter);
    case PE_PanelItemViewRow:
        // Each item draws its own part.
        return;
    case PE_PanelItemViewItem:
        if (const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(option))
            return drawItemPanel(*item, *painter);
        break;
    case PE_IndicatorCheckBox:
        return drawIndicator(*option, *painter, false);
    case PE_IndicatorRadioButton:
        return drawIndicator(*option, *painter, true);
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
            if (const QColor fill = buttonFill(label, widget); fill.isValid())
                for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
                    label.palette.setColor(group, QPalette::ButtonText, textOn(fill));
            return QProxyStyle::drawControl(element, &label, painter, widget);
        }
    }
    if (element == CE_HeaderSection || element == CE_HeaderEmptyArea)
        return drawHeaderSection(*option, *painter);
    if (const auto* const bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option)) {
        if (element == CE_ProgressBarGroove || element == CE_ProgressBarLabel)
            return;
        // Of an unknown length: Fusion's own moving bar.
        if (element == CE_ProgressBarContents && bar->maximum > bar->minimum)
            return drawProgress(*bar, *painter);
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
    if (const auto* const combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        combo && combo->frame)
        return drawComboBox(*combo, *painter,
                            proxy()->subControlRect(control, option, SC_ComboBoxArrow, widget));
    if (const auto* const spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option); spin && spin->frame)
        return drawSpinBox(*spin, *painter, proxy()->subControlRect(control, option, SC_SpinBoxUp, widget),
                           proxy()->subControlRect(control, option, SC_SpinBoxDown, widget));
    if (const auto* const slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
        if (control == CC_Slider && slider->tickPosition == QSlider::NoTicks)
            return drawSlider(*slider, *painter,
                              proxy()->subControlRect(control, option, SC_SliderHandle, widget));
        if (control == CC_ScrollBar)
            return drawScrollBar(*slider, *painter,
                                 proxy()->subControlRect(control, option, SC_ScrollBarSlider, widget));
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
