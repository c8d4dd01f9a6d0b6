// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Strokes.h>

namespace Theme::Strokes {

QColor mixed(const QColor& under, const QColor& over, double share) {
    const auto part = [share](int a, int b) { return static_cast<int>(a + (b - a) * share + 0.5); };
    return {part(under.red(), over.red()), part(under.green(), over.green()),
            part(under.blue(), over.blue())};
}

void box(QPainter& painter, const QRectF& rect, const Box& box, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal inset = box.lineWidth / 2;
    painter.setPen(box.line.isValid() ? QPen{box.line, box.lineWidth} : QPen{Qt::NoPen});
    painter.setBrush(box.fill.isValid() ? QBrush{box.fill} : QBrush{Qt::NoBrush});
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.restore();
}

Box pressable(const QStyleOption& option, const QColor& fill) {
    const QPalette& palette = option.palette;
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool isDown = option.state & (QStyle::State_Sunken | QStyle::State_On);
    const bool isHovered = isEnabled && (option.state & QStyle::State_MouseOver);
    const QColor ink = palette.color(QPalette::WindowText);
    if (fill.isValid()) {
        if (!isEnabled)
            return {.fill = mixed(palette.color(QPalette::Window), fill, 0.4), .line = {}};
        return {.fill = mixed(fill, Qt::black, isDown ? 0.18 : isHovered ? 0.08 : 0), .line = {}};
    }
    const QColor base = isEnabled ? palette.color(QPalette::Button) : palette.color(QPalette::Window);
    return {.fill = mixed(base, ink,
                          isDown      ? 0.14
                          : isHovered ? 0.06
                                      : 0),
            .line = mixed(palette.color(QPalette::Window), ink, isEnabled ? 0.24 : 0.12)};
}

Box field(const QStyleOption& option) {
    const QPalette& palette = option.palette;
    const bool isEnabled = option.state & QStyle::State_Enabled;
    if (isEnabled && (option.state & QStyle::State_HasFocus))
        return {.fill = palette.color(QPalette::Base),
                .line = palette.color(QPalette::Highlight),
                .lineWidth = 2};
    return {.fill = palette.color(isEnabled ? QPalette::Base : QPalette::Window),
            .line = mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText),
                          isEnabled ? 0.24 : 0.12)};
}

void focusRing(QPainter& painter, const QRectF& rect, const QPalette& palette, qreal radius) {
    box(painter, rect, {.fill = {}, .line = palette.color(QPalette::Highlight), .lineWidth = 2}, radius);
}

void chevron(QPainter& painter, const QRectF& rect, Direction direction, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    const QPointF middle = rect.center();
    const qreal rise = direction == Direction::Up ? 2 : -2;
    const QPointF points[3] = {{middle.x() - 4, middle.y() + rise},
                               {middle.x(), middle.y() - rise},
                               {middle.x() + 4, middle.y() + rise}};
    painter.drawPolyline(points, 3);
    painter.restore();
}

void tick(QPainter& painter, const QRectF& rect, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    const auto at = [&rect](qreal x, qreal y) {
        return QPointF{rect.x() + rect.width() * x, rect.y() + rect.height() * y};
    };
    const QPointF points[3] = {at(0.24, 0.54), at(0.43, 0.72), at(0.77, 0.32)};
    painter.drawPolyline(points, 3);
    painter.restore();
}

} // namespace Theme::Strokes
