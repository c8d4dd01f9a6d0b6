// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace DemoTrip {

inline constexpr QSize landscape(1600, 1200);
inline constexpr QSize portrait(1200, 1600);

/// A picture and the brush to paint it with. Stays where it is: the brush points to the picture.
struct Canvas {
    QImage image;
    QPainter painter;
    double width;
    double height;

    explicit Canvas(QSize size);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// The strip between two heights.
    [[nodiscard]] QRectF area(double top, double bottom) const { return {0, top, width, bottom - top}; }

    /// The picture, with the marks of a photograph; to be called last.
    [[nodiscard]] QImage finished(std::uint32_t seed);
};

// The colours of the country's houses.
[[nodiscard]] const std::vector<QColor>& paleWalls();
[[nodiscard]] const std::vector<QColor>& brightWalls();
[[nodiscard]] const std::vector<QColor>& clayRoofs();

void polygon(QPainter& painter, const QColor& colour, std::initializer_list<QPointF> points);
void ellipse(QPainter& painter, const QColor& colour, QPointF centre, double rx, double ry);
/// `at` is the middle of the deck, `size` the length of the hull.
void paintSailboat(QPainter& painter, QPointF at, double size, const QColor& hull, const QColor& sail);

} // namespace DemoTrip
