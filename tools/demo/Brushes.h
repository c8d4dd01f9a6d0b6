// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Noise.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <functional>
#include <vector>

namespace DemoTrip {

/// What the scenes are painted with. Lengths are pixels of the picture.

[[nodiscard]] QColor blended(const QColor& a, const QColor& b, double t);
/// Brighter (amount above 0) or darker (below), -1…1.
[[nodiscard]] QColor toned(const QColor& colour, double amount);

/// A vertical gradient through evenly spaced colours.
void paintGradient(QPainter& painter, const QRectF& area, const std::vector<QColor>& colours);

/// A layer of noise: `colour` gets the noise and the height in the area (0 top … 1 bottom) and says what to
/// paint there. Noise is stretched: features are about `scaleX` by `scaleY` pixels.
void paintNoise(QPainter& painter, const QRectF& area, double scaleX, double scaleY, std::uint32_t seed,
                const std::function<QColor(double noise, double height)>& colour);

void paintClouds(QPainter& painter, const QRectF& area, const QColor& colour, double cover,
                 std::uint32_t seed);
void paintGlow(QPainter& painter, QPointF centre, double radius, const QColor& colour);
void paintSun(QPainter& painter, QPointF centre, double radius, const QColor& colour);

/// Sea or river: a gradient with ripples that grow towards the viewer.
void paintWater(QPainter& painter, const QRectF& area, const QColor& far, const QColor& near,
                std::uint32_t seed);
/// The glittering path of light under a low sun.
void paintGlitter(QPainter& painter, const QRectF& water, double centreX, const QColor& colour,
                  std::uint32_t seed);
/// What stands above the water line, upside down, dimmed and broken by ripples.
void paintReflection(QPainter& painter, const QImage& picture, const QRectF& water, double opacity,
                     std::uint32_t seed);

/// The outline of a range of hills: `base` is the mean height, `relief` how far they rise and fall.
[[nodiscard]] QPainterPath ridge(double width, double bottom, double base, double relief, double featureWidth,
                                 std::uint32_t seed);
/// The same, filled, fading into the haze at its foot, with the texture of woods.
void paintRidge(QPainter& painter, const QSizeF& picture, double base, double relief, double featureWidth,
                const QColor& colour, const QColor& haze, std::uint32_t seed);

struct HouseStyle {
    std::vector<QColor> walls;
    std::vector<QColor> roofs;
    double minWidth = 80;
    double maxWidth = 140;
    double minHeight = 120;
    double maxHeight = 200;
    /// Of one window, in pixels; the rest follows from it.
    double windowWidth = 14;
    bool hasBalconies = false;
    /// Mixed into everything, by `hazeAmount`.
    QColor haze = Qt::white;
    double hazeAmount = 0;
};
/// A row of houses that stand on `ground` from left to right.
void paintHouses(QPainter& painter, double left, double right, double ground, const HouseStyle& style,
                 Random& random);

/// A crown of leaves made of many dabs.
void paintFoliage(QPainter& painter, QPointF centre, double radius, const QColor& colour, Random& random);
void paintBird(QPainter& painter, QPointF at, double span, const QColor& colour);

/// Turns the painting into something like a photograph: texture, grain, a darker rim.
void finish(QImage& picture, std::uint32_t seed);

[[nodiscard]] QImage blurred(const QImage& picture, int radius);

} // namespace DemoTrip
