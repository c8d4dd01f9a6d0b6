// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Canvas.h"

#include "Brushes.h"

namespace DemoTrip {

Canvas::Canvas(QSize size)
    : image(size, QImage::Format_RGB32)
    , width(size.width())
    , height(size.height()) {
    image.fill(Qt::black);
    painter.begin(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
}

QImage Canvas::finished(std::uint32_t seed) {
    painter.end();
    finish(image, seed);
    return image;
}

const std::vector<QColor>& paleWalls() {
    static const std::vector<QColor> colours{QColor(246, 238, 222), QColor(250, 246, 238),
                                             QColor(240, 214, 176), QColor(238, 196, 170),
                                             QColor(244, 226, 160), QColor(220, 228, 232)};
    return colours;
}

const std::vector<QColor>& brightWalls() {
    static const std::vector<QColor> colours{
        QColor(214, 96, 70), QColor(236, 176, 72),  QColor(92, 138, 178),  QColor(232, 220, 196),
        QColor(190, 72, 80), QColor(240, 204, 120), QColor(126, 160, 132), QColor(248, 242, 230)};
    return colours;
}

const std::vector<QColor>& clayRoofs() {
    static const std::vector<QColor> colours{QColor(196, 96, 62), QColor(178, 84, 58), QColor(208, 116, 74)};
    return colours;
}

void polygon(QPainter& painter, const QColor& colour, std::initializer_list<QPointF> points) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF(QList<QPointF>(points)));
}

void ellipse(QPainter& painter, const QColor& colour, QPointF centre, double rx, double ry) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(centre, rx, ry);
}

void paintSailboat(QPainter& painter, QPointF at, double size, const QColor& hull, const QColor& sail) {
    polygon(painter, hull,
            {at + QPointF(-size * 0.5, 0), at + QPointF(size * 0.55, 0),
             at + QPointF(size * 0.4, size * 0.16), at + QPointF(-size * 0.38, size * 0.16)});
    polygon(painter, sail,
            {at + QPointF(0, -size * 1.2), at + QPointF(size * 0.48, -size * 0.08),
             at + QPointF(0, -size * 0.08)});
    polygon(painter, toned(sail, -0.12),
            {at + QPointF(-size * 0.05, -size * 1.1), at + QPointF(-size * 0.05, -size * 0.08),
             at + QPointF(-size * 0.4, -size * 0.08)});
    painter.setPen(QPen(toned(hull, -0.3), size * 0.025));
    painter.drawLine(at, at + QPointF(0, -size * 1.25));
}

} // namespace DemoTrip
