// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Brushes.h"

#include <QLinearGradient>
#include <QRadialGradient>
#include <algorithm>
#include <cmath>

namespace DemoTrip {

namespace {

/// Soft layers are computed at a quarter of the size and scaled up.
constexpr int coarseness = 4;

QImage upscaled(const QImage& image, const QSize& size) {
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

int clamped(double value) {
    return static_cast<int>(std::clamp(value, 0.0, 255.0));
}

} // namespace

QColor blended(const QColor& a, const QColor& b, double t) {
    const auto mix = [t](int x, int y) { return clamped(x + (y - x) * t + 0.5); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()),
            mix(a.alpha(), b.alpha())};
}

QColor toned(const QColor& colour, double amount) {
    QColor result = blended(colour, amount > 0 ? Qt::white : Qt::black, std::abs(amount));
    result.setAlpha(colour.alpha());
    return result;
}

void paintGradient(QPainter& painter, const QRectF& area, const std::vector<QColor>& colours) {
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    for (std::size_t i = 0; i < colours.size(); ++i)
        gradient.setColorAt(static_cast<double>(i) / static_cast<double>(colours.size() - 1), colours[i]);
    painter.fillRect(area, gradient);
}

void paintNoise(QPainter& painter, const QRectF& area, double scaleX, double scaleY, std::uint32_t seed,
                const std::function<QColor(double noise, double height)>& colour) {
    const QSize size = area.size().toSize();
    QImage layer(size / coarseness + QSize(1, 1), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < layer.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(layer.scanLine(y));
        for (int x = 0; x < layer.width(); ++x)
            row[x] = qPremultiply(colour(fractalNoise(x * coarseness / scaleX, y * coarseness / scaleY, seed),
                                         static_cast<double>(y) / layer.height())
                                      .rgba());
    }
    painter.drawImage(area.topLeft(), upscaled(layer, size));
}

void paintClouds(QPainter& painter, const QRectF& area, const QColor& colour, double cover,
                 std::uint32_t seed) {
    paintNoise(painter, area, 420, 130, seed, [&](double noise, double height) {
        const double density = std::clamp((noise - (1 - cover)) * 4, 0.0, 1.0);
        QColor result = blended(toned(colour, -0.12), colour, std::clamp((noise - 0.5) * 4 + 0.5, 0.0, 1.0));
        result.setAlphaF(
            static_cast<float>(density * 0.85 * std::sin(std::clamp(height * 1.1, 0.0, 1.0) * M_PI)));
        return result;
    });
}

void paintGlow(QPainter& painter, QPointF centre, double radius, const QColor& colour) {
    QRadialGradient gradient(centre, radius);
    QColor clear = colour;
    clear.setAlpha(0);
    QColor half = colour;
    half.setAlphaF(colour.alphaF() * 0.35F);
    gradient.setColorAt(0, colour);
    gradient.setColorAt(0.35, half);
    gradient.setColorAt(1, clear);
    painter.fillRect(QRectF(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius)), gradient);
}

void paintSun(QPainter& painter, QPointF centre, double radius, const QColor& colour) {
    QColor halo = colour;
    halo.setAlpha(170);
    paintGlow(painter, centre, radius * 7, halo);
    painter.setPen(Qt::NoPen);
    painter.setBrush(toned(colour, 0.6));
    painter.drawEllipse(centre, radius, radius);
}

void paintWater(QPainter& painter, const QRectF& area, const QColor& far, const QColor& near,
                std::uint32_t seed) {
    paintGradient(painter, area, {far, blended(far, near, 0.6), near});
    Random random(seed);
    const int count = static_cast<int>(area.width() * area.height() / 420);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < count; ++i) {
        // More of them, and smaller, in the distance.
        const double depth = std::pow(random.unit(), 1.6);
        const QPointF centre(area.left() + random.unit() * area.width(), area.top() + depth * area.height());
        const double length = 6 + 70 * depth * random.between(0.4, 1);
        QColor colour = random.chance(0.5) ? toned(far, 0.35) : toned(near, -0.35);
        colour.setAlphaF(static_cast<float>(random.between(0.04, 0.2)));
        painter.setBrush(colour);
        painter.drawEllipse(centre, length, 0.6 + 3.4 * depth * random.unit());
    }
}

void paintGlitter(QPainter& painter, const QRectF& water, double centreX, const QColor& colour,
                  std::uint32_t seed) {
    Random random(seed);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 1500; ++i) {
        const double depth = std::pow(random.unit(), 1.3);
        const double spread = 18 + depth * water.width() * 0.16;
        const double offset = (random.unit() + random.unit() + random.unit() - 1.5) * spread * 1.3;
        QColor dab = colour;
        dab.setAlphaF(static_cast<float>(random.between(0.15, 0.85) * (1 - 0.5 * depth)));
        painter.setBrush(dab);
        painter.drawEllipse(QPointF(centreX + offset, water.top() + depth * water.height()),
                            random.between(2, 6 + 34 * depth), random.between(0.7, 1.2 + 2.6 * depth));
    }
}

void paintReflection(QPainter& painter, const QImage& picture, const QRectF& water, double opacity,
                     std::uint32_t seed) {
    painter.save();
    painter.setOpacity(opacity);
    const int rows = static_cast<int>(water.height());
    for (int row = 0; row < rows; ++row) {
        const double depth = static_cast<double>(row) / rows;
        const int source = static_cast<int>(water.top()) - 1 - row;
        if (source < 0)
            break;
        const double shift = (smoothNoise(row / (3 + 9 * depth), 0.5, seed) - 0.5) * (6 + 40 * depth);
        // A little wider than it is, so that no gap opens at the sides.
        painter.drawImage(QRectF(water.left() + shift - 25, water.top() + row, water.width() + 50, 1),
                          picture, QRectF(water.left(), source, water.width(), 1));
    }
    painter.restore();
}

QPainterPath ridge(double width, double bottom, double base, double relief, double featureWidth,
                   std::uint32_t seed) {
    QPainterPath path(QPointF(0, bottom));
    for (double x = 0; x <= width + 4; x += 4)
        path.lineTo(x, base - relief * (fractalNoise(x / featureWidth, 0.5, seed, 7) - 0.5) * 2);
    path.lineTo(width, bottom);
    path.closeSubpath();
    return path;
}

void paintRidge(QPainter& painter, const QSizeF& picture, double base, double relief, double featureWidth,
                const QColor& colour, const QColor& haze, std::uint32_t seed) {
    painter.save();
    const QPainterPath path = ridge(picture.width(), picture.height(), base, relief, featureWidth, seed);
    painter.setClipPath(path);
    QLinearGradient gradient(0, base - relief, 0, base + relief * 1.5);
    gradient.setColorAt(0, colour);
    gradient.setColorAt(1, blended(colour, haze, 0.45));
    painter.fillRect(path.boundingRect(), gradient);
    paintNoise(painter, path.boundingRect(), 46, 30, seed + 7, [&](double noise, double) {
        QColor shade = noise > 0.5 ? toned(colour, 0.5) : toned(colour, -0.6);
        shade.setAlphaF(static_cast<float>(std::min(0.4, std::abs(noise - 0.5) * 0.8)));
        return shade;
    });
    painter.restore();
}

void paintHouses(QPainter& painter, double left, double right, double ground, const HouseStyle& style,
                 Random& random) {
    const auto tinted = [&](const QColor& colour) { return blended(colour, style.haze, style.hazeAmount); };
    for (double x = left; x < right;) {
        const double width = random.between(style.minWidth, style.maxWidth);
        const double height = random.between(style.minHeight, style.maxHeight);
        const QRectF wall(x, ground - height, width, height);
        const QColor colour =
            style.walls[static_cast<std::size_t>(random.below(static_cast<int>(style.walls.size())))];
        const QColor roof =
            style.roofs[static_cast<std::size_t>(random.below(static_cast<int>(style.roofs.size())))];

        QLinearGradient light(wall.topLeft(), wall.topRight());
        light.setColorAt(0, tinted(toned(colour, 0.12)));
        light.setColorAt(1, tinted(toned(colour, -0.10)));
        painter.setPen(Qt::NoPen);
        painter.fillRect(wall, light);

        // The roof, with its rows of tiles.
        const double rise = width * random.between(0.16, 0.3);
        QPolygonF roofShape;
        roofShape << QPointF(x - 4, wall.top() + 1) << QPointF(x + width * 0.14, wall.top() - rise)
                  << QPointF(x + width * 0.86, wall.top() - rise) << QPointF(x + width + 4, wall.top() + 1);
        painter.setBrush(tinted(roof));
        painter.drawPolygon(roofShape);
        painter.setPen(QPen(tinted(toned(roof, -0.25)), 1));
        for (double tile = 0.1; tile < 1; tile += std::max(0.08, 7 / width))
            painter.drawLine(QPointF(x - 4 + tile * (width + 8), wall.top()),
                             QPointF(x + width * (0.14 + 0.72 * tile), wall.top() - rise));
        if (random.chance(0.4)) {
            painter.fillRect(
                QRectF(x + width * random.between(0.2, 0.7), wall.top() - rise * 1.35, width * 0.09, rise),
                tinted(toned(colour, -0.2)));
        }

        // Windows on a grid, with shutters or light in some of them.
        const double w = style.windowWidth;
        const double h = w * 1.55;
        const int columns = std::max(1, static_cast<int>((width - w * 0.8) / (w * 2.1)));
        const int rows = std::max(1, static_cast<int>((height - h * 0.5) / (h * 1.75)));
        const double stepX = width / columns;
        const double stepY = height / rows;
        const QColor shutter = random.chance(0.5) ? QColor(58, 108, 92) : QColor(70, 96, 140);
        const bool hasShutters = random.chance(0.45);
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                const QRectF pane(x + (column + 0.5) * stepX - w / 2,
                                  wall.top() + (row + 0.42) * stepY - h / 2, w, h);
                painter.fillRect(pane.adjusted(-w * 0.14, -w * 0.14, w * 0.14, w * 0.14),
                                 tinted(toned(colour, 0.55)));
                const bool isLit = random.chance(0.12);
                painter.fillRect(pane, tinted(isLit ? QColor(250, 208, 120) : QColor(52, 66, 84)));
                painter.fillRect(QRectF(pane.left(), pane.center().y() - w * 0.04, w, w * 0.08),
                                 tinted(toned(colour, 0.5)));
                painter.fillRect(QRectF(pane.center().x() - w * 0.04, pane.top(), w * 0.08, h),
                                 tinted(toned(colour, 0.5)));
                if (hasShutters) {
                    painter.fillRect(QRectF(pane.left() - w * 0.5, pane.top(), w * 0.4, h), tinted(shutter));
                    painter.fillRect(QRectF(pane.right() + w * 0.1, pane.top(), w * 0.4, h), tinted(shutter));
                }
                if (style.hasBalconies && random.chance(0.55)) {
                    painter.setPen(QPen(tinted(QColor(40, 44, 48)), std::max(1.0, w * 0.07)));
                    const QRectF balcony(pane.left() - w * 0.45, pane.bottom() - h * 0.28, w * 1.9, h * 0.36);
                    painter.setBrush(Qt::NoBrush);
                    painter.drawRect(balcony);
                    for (double bar = balcony.left(); bar < balcony.right(); bar += w * 0.22)
                        painter.drawLine(QPointF(bar, balcony.top()), QPointF(bar, balcony.bottom()));
                    painter.setPen(Qt::NoPen);
                    if (random.chance(0.5)) {
                        static const QColor laundry[] = {QColor(236, 240, 245), QColor(222, 90, 84),
                                                         QColor(84, 140, 200), QColor(244, 200, 92)};
                        for (double cloth = balcony.left(); cloth < balcony.right() - w * 0.4;
                             cloth += w * 0.5)
                            painter.fillRect(
                                QRectF(cloth, balcony.bottom(), w * 0.38, h * random.between(0.25, 0.5)),
                                tinted(laundry[random.below(4)]));
                    }
                }
            }
        }
        // The neighbour's shadow, and a line of sky where houses do not quite meet.
        QLinearGradient shadow(wall.topLeft(), wall.topLeft() + QPointF(width * 0.25, 0));
        shadow.setColorAt(0, QColor(30, 20, 40, 70));
        shadow.setColorAt(1, QColor(30, 20, 40, 0));
        painter.fillRect(wall, shadow);
        x += width;
    }
}

void paintFoliage(QPainter& painter, QPointF centre, double radius, const QColor& colour, Random& random) {
    painter.setPen(Qt::NoPen);
    const int dabs = static_cast<int>(60 + radius * 3);
    for (int i = 0; i < dabs; ++i) {
        const double angle = random.unit() * 2 * M_PI;
        const double distance = std::sqrt(random.unit()) * radius;
        const QPointF at = centre + QPointF(std::cos(angle) * distance, std::sin(angle) * distance * 0.8);
        // Light comes from the upper left.
        const double light =
            std::clamp(((centre.y() - at.y()) + (centre.x() - at.x()) * 0.5) / radius, -1.0, 1.0);
        QColor dab = toned(colour, light * 0.3 + random.between(-0.12, 0.12));
        dab.setAlpha(210);
        painter.setBrush(dab);
        const double size = radius * random.between(0.06, 0.16);
        painter.drawEllipse(at, size, size * random.between(0.6, 1));
    }
}

void paintBird(QPainter& painter, QPointF at, double span, const QColor& colour) {
    QPainterPath wings(at - QPointF(span / 2, span * 0.12));
    wings.quadTo(at - QPointF(span * 0.22, span * 0.3), at);
    wings.quadTo(at + QPointF(span * 0.22, -span * 0.3), at + QPointF(span / 2, -span * 0.12));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, span * 0.07, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(wings);
}

void finish(QImage& picture, std::uint32_t seed) {
    Random random(seed);
    const double centreX = picture.width() / 2.0;
    const double centreY = picture.height() / 2.0;
    const double reach = std::hypot(centreX, centreY);
    for (int y = 0; y < picture.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const double texture =
                smoothNoise(x / 5.0, y / 5.0, seed + 1) + smoothNoise(x / 2.0, y / 2.0, seed + 2);
            const double rim = std::hypot(x - centreX, y - centreY) / reach;
            const double light = (1 + 0.045 * (texture - 1)) * (1 - 0.22 * rim * rim * rim);
            const double grain = (random.unit() + random.unit() - 1) * 7;
            row[x] = qRgb(clamped(qRed(row[x]) * light + grain), clamped(qGreen(row[x]) * light + grain),
                          clamped(qBlue(row[x]) * light + grain));
        }
    }
}

QImage blurred(const QImage& picture, int radius) {
    const QImage source = picture.convertToFormat(QImage::Format_RGB32);
    QImage across(source.size(), source.format());
    QImage result(source.size(), source.format());
    // Two running means, along rows and then along columns.
    const auto average = [radius](const QImage& from, QImage& to, bool alongRows) {
        const int lines = alongRows ? from.height() : from.width();
        const int length = alongRows ? from.width() : from.height();
        const auto at = [&](const QImage& image, int line, int i) -> QRgb {
            const int clampedIndex = std::clamp(i, 0, length - 1);
            return alongRows ? reinterpret_cast<const QRgb*>(image.constScanLine(line))[clampedIndex]
                             : reinterpret_cast<const QRgb*>(image.constScanLine(clampedIndex))[line];
        };
        const int count = 2 * radius + 1;
        for (int line = 0; line < lines; ++line) {
            int red = 0;
            int green = 0;
            int blue = 0;
            const auto add = [&](QRgb pixel, int sign) {
                red += sign * qRed(pixel);
                green += sign * qGreen(pixel);
                blue += sign * qBlue(pixel);
            };
            for (int i = -radius; i <= radius; ++i)
                add(at(from, line, i), 1);
            for (int i = 0; i < length; ++i) {
                const QRgb mean = qRgb(red / count, green / count, blue / count);
                if (alongRows)
                    reinterpret_cast<QRgb*>(to.scanLine(line))[i] = mean;
                else
                    reinterpret_cast<QRgb*>(to.scanLine(i))[line] = mean;
                add(at(from, line, i - radius), -1);
                add(at(from, line, i + radius + 1), 1);
            }
        }
    };
    average(source, across, true);
    average(across, result, false);
    return result;
}

} // namespace DemoTrip
