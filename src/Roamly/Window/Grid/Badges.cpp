// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/Badges.h>

#include <QColor>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QString>

namespace Grid::Badges {

namespace {

const QColor ground{0x22, 0x22, 0x22, 0xd0};
const QColor edge{0x00, 0x00, 0x00, 0x90};
const QColor sign{0xff, 0xff, 0xff};

QPen stroke(const QColor& colour, double width) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QFont badgeFont(const QFont& font) {
    QFont small{font};
    small.setPixelSize(12);
    small.setWeight(QFont::DemiBold);
    return small;
}

void paintGround(QPainter& painter, const QRectF& area, const QColor& fill) {
    painter.setPen(QPen{edge, 1});
    painter.setBrush(fill);
    const QRectF shape = area.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);
    painter.setBrush(Qt::NoBrush);
}

} // namespace

void paintCheck(QPainter& painter, const QRect& area, bool isInTheFilm, const QColor& accent,
                const QColor& onAccent) {
    if (!isInTheFilm) {
        paintGround(painter, area, QColor{0, 0, 0, 0x50});
        painter.setPen(QPen{sign, 1.5});
        painter.drawEllipse(QRectF{area}.adjusted(2, 2, -2, -2));
        return;
    }
    paintGround(painter, area, onAccent);
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawEllipse(QRectF{area}.adjusted(2, 2, -2, -2));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(stroke(onAccent, 2));
    const QPointF corner = area.topLeft();
    const QPointF check[] = {corner + QPointF{6.25, 10.25}, corner + QPointF{8.9, 12.9},
                             corner + QPointF{13.75, 7.4}};
    painter.drawPolyline(check, 3);
}

int stackWidth(std::size_t count, const QFont& font) {
    return 25 + QFontMetrics{badgeFont(font)}.horizontalAdvance(QString::number(count)) + 7;
}

void paintStack(QPainter& painter, const QRect& area, std::size_t count, const QFont& font) {
    paintGround(painter, area, ground);
    painter.setPen(stroke(sign, 1.5));
    const QPointF corner = area.topLeft();
    painter.drawRoundedRect(QRectF{corner + QPointF{7.75, 8.25}, QSizeF{7, 6}}, 1.5, 1.5);
    const QPointF behind[] = {corner + QPointF{10.25, 5.5}, corner + QPointF{17.25, 5.5},
                              corner + QPointF{17.25, 11.25}};
    painter.drawPolyline(behind, 3);
    painter.setFont(badgeFont(font));
    painter.drawText(area.adjusted(23, 0, -7, 0), Qt::AlignVCenter | Qt::AlignHCenter | Qt::TextDontClip,
                     QString::number(count));
}

void paintApproximate(QPainter& painter, const QRect& area) {
    paintGround(painter, area, ground);
    painter.setPen(stroke(sign, 1.5));
    const QPointF corner = area.topLeft();
    QPainterPath waves;
    for (const double y : {8.0, 12.25}) {
        waves.moveTo(corner + QPointF{5.75, y + 0.6});
        waves.cubicTo(corner + QPointF{7.75, y - 2.6}, corner + QPointF{12.25, y + 2.6},
                      corner + QPointF{14.25, y - 0.6});
    }
    painter.drawPath(waves);
}

void paintMissing(QPainter& painter, const QRect& area) {
    paintGround(painter, area, ground);
    const QPointF corner = area.topLeft();
    painter.setPen(stroke(sign, 2));
    painter.drawLine(corner + QPointF{10, 5.5}, corner + QPointF{10, 10.75});
    painter.drawPoint(corner + QPointF{10, 14.25});
}

} // namespace Grid::Badges
