// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Brushes.h"
#include "Canvas.h"
#include "Scenes.h"

#include <QLinearGradient>
#include <algorithm>
#include <cmath>
#include <vector>

namespace DemoTrip::Scenes {

namespace {

void paintPine(QPainter& painter, QPointF foot, double height, const QColor& colour, Random& random) {
    for (int tier = 0; tier < 9; ++tier) {
        const double top = foot.y() - height + tier * height * 0.1;
        const double half = height * (0.03 + 0.024 * tier) * random.between(0.8, 1.2);
        polygon(painter, toned(colour, random.between(-0.15, 0.15)),
                {QPointF(foot.x(), top), QPointF(foot.x() + half, top + height * 0.17),
                 QPointF(foot.x() - half, top + height * 0.17)});
    }
}

} // namespace

QImage palace() {
    Canvas c(portrait);
    Random random(61);
    paintGradient(c.painter, c.area(0, 1100),
                  {QColor(112, 158, 206), QColor(186, 208, 224), QColor(238, 236, 226)});
    paintClouds(c.painter, c.area(0, 620), QColor(250, 250, 250), 0.58, 62);
    paintRidge(c.painter, {c.width, 1150}, 900, 70, 460, QColor(126, 150, 160), QColor(222, 228, 226), 63);

    // The rock.
    QPainterPath rock(QPointF(60, 1240));
    rock.cubicTo(160, 860, 380, 800, 620, 790);
    rock.cubicTo(900, 800, 1080, 900, 1190, 1240);
    rock.closeSubpath();
    c.painter.setPen(Qt::NoPen);
    c.painter.setBrush(QColor(120, 126, 112));
    c.painter.drawPath(rock);

    const auto block = [&](double left, double right, double top, double bottom, const QColor& colour,
                           bool isCrenellated) {
        QLinearGradient light(left, 0, right, 0);
        light.setColorAt(0, toned(colour, 0.2));
        light.setColorAt(0.7, colour);
        light.setColorAt(1, toned(colour, -0.3));
        c.painter.fillRect(QRectF(left, top, right - left, bottom - top), light);
        if (isCrenellated) {
            for (double x = left; x + 12 <= right + 1; x += 24)
                c.painter.fillRect(QRectF(x, top - 16, 12, 17), light);
        }
    };
    const auto dome = [&](double x, double y, double radius, const QColor& colour) {
        QPainterPath shape(QPointF(x - radius, y));
        shape.cubicTo(x - radius * 1.15, y - radius * 1.1, x - radius * 0.3, y - radius * 1.3, x,
                      y - radius * 1.9);
        shape.cubicTo(x + radius * 0.3, y - radius * 1.3, x + radius * 1.15, y - radius * 1.1, x + radius, y);
        QLinearGradient light(x - radius, 0, x + radius, 0);
        light.setColorAt(0, toned(colour, 0.35));
        light.setColorAt(1, toned(colour, -0.3));
        c.painter.setPen(Qt::NoPen);
        c.painter.setBrush(light);
        c.painter.drawPath(shape);
        c.painter.setPen(QPen(QColor(120, 110, 90), 4));
        c.painter.drawLine(QPointF(x, y - radius * 1.85), QPointF(x, y - radius * 2.5));
        c.painter.setPen(Qt::NoPen);
    };
    const auto arches = [&](double left, double right, double y, double width, double height) {
        for (double x = left; x + width <= right; x += width * 1.9) {
            QPainterPath arch;
            arch.setFillRule(Qt::WindingFill);
            arch.addRoundedRect(QRectF(x, y, width, height), width / 2, width / 2);
            arch.addRect(QRectF(x, y + height / 2, width, height / 2));
            c.painter.setBrush(QColor(66, 58, 72));
            c.painter.drawPath(arch);
        }
    };
    const QColor red(186, 62, 54);
    const QColor yellow(240, 192, 72);
    block(590, 900, 520, 860, yellow, true);
    block(880, 1010, 600, 880, toned(yellow, -0.08), true);
    block(830, 920, 380, 860, yellow, false);
    dome(875, 382, 52, QColor(230, 226, 210));
    block(250, 600, 560, 870, red, true);
    block(400, 500, 300, 860, red, true);
    for (const double x : {392.0, 508.0})
        block(x - 14, x + 14, 262, 420, toned(red, 0.08), false);
    dome(392, 264, 17, QColor(222, 200, 150));
    dome(508, 264, 17, QColor(222, 200, 150));
    ellipse(c.painter, QColor(250, 244, 230), {450, 380}, 30, 30);
    c.painter.setPen(QPen(QColor(50, 40, 40), 4));
    c.painter.drawLine(QPointF(450, 380), QPointF(450, 358));
    c.painter.drawLine(QPointF(450, 380), QPointF(464, 388));
    c.painter.setPen(Qt::NoPen);
    arches(276, 400, 640, 30, 72);
    arches(520, 600, 640, 26, 66);
    arches(276, 600, 760, 30, 72);
    arches(624, 880, 590, 34, 84);
    arches(624, 880, 726, 34, 84);
    arches(900, 1000, 670, 24, 60);
    arches(856, 900, 470, 34, 80);
    arches(432, 480, 470, 34, 76);
    block(160, 1060, 850, 900, QColor(206, 190, 160), true);

    paintNoise(c.painter, c.area(780, 1080), 420, 60, 64, [](double noise, double height) {
        return QColor(244, 246, 246,
                      std::clamp(static_cast<int>((noise - 0.4) * 620 * std::sin(height * M_PI)), 0, 190));
    });
    // Woods down to the viewer.
    paintGradient(c.painter, c.area(1150, 1600),
                  {QColor(122, 146, 132), QColor(52, 80, 58), QColor(22, 42, 28)});
    for (int row = 0; row < 6; ++row) {
        const double nearness = row / 5.0;
        const QColor green = blended(QColor(132, 158, 146), QColor(34, 64, 44), nearness);
        for (int i = 0; i < 30 - row * 3; ++i) {
            const double x = random.unit() * 1300 - 50;
            const double y = 1010 + 110 * row + random.between(-20, 50);
            if (random.chance(0.55))
                paintPine(c.painter, {x, y + 60}, 130 + 170 * nearness * random.between(0.8, 1.2), green,
                          random);
            else
                paintFoliage(c.painter, {x, y}, 50 + 60 * nearness, toned(green, 0.08), random);
        }
        c.painter.fillRect(c.area(1080 + 110 * row, 1200 + 110 * row),
                           QColor(green.red(), green.green(), green.blue(), 90));
        if (row == 2)
            paintNoise(c.painter, c.area(1040, 1330), 520, 70, 65, [](double noise, double height) {
                return QColor(
                    240, 244, 242,
                    std::clamp(static_cast<int>((noise - 0.42) * 480 * std::sin(height * M_PI)), 0, 150));
            });
    }
    return c.finished(66);
}

QImage forest() {
    Canvas c(portrait);
    Random random(71);
    paintGradient(c.painter, c.image.rect(),
                  {QColor(206, 222, 166), QColor(150, 186, 120), QColor(78, 110, 66), QColor(44, 58, 36)});
    paintGlow(c.painter, {620, 420}, 700, QColor(255, 252, 210, 220));
    for (int layer = 0; layer < 5; ++layer) {
        const double nearness = layer / 4.0;
        const QColor bark = blended(QColor(150, 166, 120), QColor(46, 36, 28), nearness);
        const int count = 15 - layer * 2;
        for (int i = 0; i < count; ++i) {
            double x = random.unit() * c.width;
            if (layer >= 3 && std::abs(x - 600) < 300) // The path stays open.
                x += x < 600 ? -300 : 300;
            const double half = (7 + 34 * nearness) * random.between(0.7, 1.2);
            const double foot = 980 + 150 * layer + random.between(-30, 30);
            QLinearGradient round(x - half, 0, x + half, 0);
            round.setColorAt(0, toned(bark, 0.22));
            round.setColorAt(0.5, bark);
            round.setColorAt(1, toned(bark, -0.4));
            const double lean = random.between(-30, 30);
            c.painter.setPen(Qt::NoPen);
            c.painter.setBrush(round);
            QPainterPath trunk(QPointF(x - half * 1.6, foot));
            trunk.cubicTo(x - half, foot - 90, x - half + lean, 300, x - half * 0.7 + lean, -20);
            trunk.lineTo(x + half * 0.7 + lean, -20);
            trunk.cubicTo(x + half + lean, 300, x + half, foot - 90, x + half * 1.6, foot);
            c.painter.drawPath(trunk);
        }
        for (int i = 0; i < 16; ++i)
            paintFoliage(c.painter, {random.unit() * c.width, random.between(-60, 330 - 40 * layer)},
                         70 + 60 * nearness, blended(QColor(186, 208, 130), QColor(58, 98, 46), nearness),
                         random);
        for (int i = 0; i < 14; ++i) {
            double x = random.unit() * c.width;
            if (std::abs(x - 600) < 90 + 50 * layer)
                x += x < 600 ? -260 : 260;
            paintFoliage(c.painter, {x, 1010 + 150 * layer + random.between(-20, 60)}, 46 + 46 * nearness,
                         blended(QColor(150, 180, 96), QColor(52, 86, 40), nearness), random);
        }
        if (layer == 2) {
            QPainterPath path(QPointF(570, 1020));
            path.cubicTo(640, 1150, 420, 1280, 330, 1600);
            path.lineTo(900, 1600);
            path.cubicTo(800, 1300, 700, 1180, 620, 1020);
            path.closeSubpath();
            c.painter.setPen(Qt::NoPen);
            c.painter.save();
            c.painter.setClipPath(path);
            paintGradient(c.painter, c.area(1020, 1600),
                          {QColor(226, 208, 158), QColor(170, 136, 92), QColor(112, 84, 58)});
            paintNoise(c.painter, c.area(1020, 1600), 60, 24, 72, [](double noise, double) {
                return noise > 0.52
                           ? QColor(255, 240, 190, 120)
                           : QColor(60, 40, 24, std::clamp(static_cast<int>((0.52 - noise) * 700), 0, 110));
            });
            c.painter.restore();
        }
    }
    // Rays of light between the crowns.
    for (int i = 0; i < 9; ++i) {
        const double x = 420 + random.between(0, 420);
        const double spread = random.between(20, 70);
        const double lean = random.between(-380, 120);
        QLinearGradient ray(x, 100, x + lean, 1250);
        ray.setColorAt(0, QColor(255, 252, 214, 70));
        ray.setColorAt(1, QColor(255, 252, 214, 0));
        c.painter.setPen(Qt::NoPen);
        c.painter.setBrush(ray);
        c.painter.drawPolygon(QPolygonF(
            QList<QPointF>{{x, 60}, {x + 16, 60}, {x + lean + spread, 1260}, {x + lean - spread, 1260}}));
    }
    for (int i = 0; i < 120; ++i) {
        QColor mote(255, 252, 220, 40 + random.below(110));
        const double r = random.between(1, 4.5);
        ellipse(c.painter, mote, {random.between(200, 1000), random.between(300, 1300)}, r, r);
    }
    return c.finished(73);
}

QImage lighthouse() {
    Canvas c(portrait);
    Random random(81);
    const double horizon = 820;
    paintGradient(c.painter, c.area(0, horizon),
                  {QColor(62, 132, 206), QColor(126, 182, 226), QColor(214, 232, 240)});
    paintClouds(c.painter, c.area(80, 780), QColor(255, 255, 255), 0.56, 82);
    paintWater(c.painter, c.area(horizon, c.height), QColor(96, 158, 190), QColor(20, 78, 116), 83);

    // The cliff, in strata.
    QPainterPath cliff(QPointF(1210, 520));
    for (double x = 1210; x >= 420; x -= 5)
        cliff.lineTo(x,
                     560 + 40 * (fractalNoise(x / 120, 0.2, 84) - 0.5) + std::pow((1210 - x) / 790, 6) * 260);
    for (double y = 830; y <= 1610; y += 6)
        cliff.lineTo(430 - 130 * std::pow((y - 830) / 780, 1.5) + 90 * (fractalNoise(y / 70, 0.7, 85) - 0.5),
                     y);
    cliff.lineTo(1210, 1610);
    c.painter.save();
    c.painter.setClipPath(cliff);
    QLinearGradient rock(300, 0, 1200, 0);
    rock.setColorAt(0, QColor(92, 76, 70));
    rock.setColorAt(0.5, QColor(188, 150, 116));
    rock.setColorAt(1, QColor(140, 108, 86));
    c.painter.fillRect(c.image.rect(), rock);
    paintNoise(c.painter, c.image.rect(), 150, 60, 86, [](double noise, double) {
        return noise > 0.5 ? QColor(246, 214, 170, std::clamp(static_cast<int>((noise - 0.5) * 500), 0, 120))
                           : QColor(52, 36, 38, std::clamp(static_cast<int>((0.5 - noise) * 560), 0, 150));
    });
    // Layers and cracks, each with a lit and a dark edge.
    for (int i = 0; i < 620; ++i) {
        QPointF at(random.between(260, 1210), random.between(560, 1610));
        const double length = random.between(20, 150);
        const bool isCrack = random.chance(0.25);
        const QPointF step =
            isCrack ? QPointF(random.between(-2, 2), 9) : QPointF(11, random.between(-2.5, 1.5));
        QPolygonF line;
        for (double gone = 0; gone < length;
             gone += 11, at += step + QPointF(random.between(-3, 3), random.between(-2, 2)))
            line << at;
        c.painter.setPen(QPen(QColor(40, 26, 28, 60 + random.below(110)), random.between(1.5, 5)));
        c.painter.drawPolyline(line);
        c.painter.setPen(QPen(QColor(255, 232, 196, 70), 1.6));
        c.painter.drawPolyline(line.translated(isCrack ? QPointF(4, 0) : QPointF(0, 4)));
    }
    c.painter.restore();
    // Heath on top.
    for (int i = 0; i < 190; ++i) {
        const double x = random.between(470, 1200);
        const double y = 575 + std::pow((1210 - x) / 790, 6) * 240 + random.unit() * random.unit() * 220;
        paintFoliage(c.painter, {x, y}, random.between(14, 34),
                     random.chance(0.2) ? QColor(196, 90, 140)
                                        : (random.chance(0.3) ? QColor(222, 190, 70) : QColor(96, 132, 72)),
                     random);
    }

    // The lighthouse.
    QPainterPath tower(QPointF(796, 580));
    tower.lineTo(826, 200);
    tower.lineTo(914, 200);
    tower.lineTo(944, 580);
    tower.closeSubpath();
    c.painter.save();
    c.painter.setClipPath(tower);
    for (int band = 0; band < 6; ++band) {
        const QColor colour = band % 2 == 0 ? QColor(206, 52, 46) : QColor(250, 248, 244);
        QLinearGradient round(796, 0, 944, 0);
        round.setColorAt(0, toned(colour, 0.2));
        round.setColorAt(0.4, colour);
        round.setColorAt(1, toned(colour, -0.4));
        c.painter.fillRect(QRectF(780, 200 + band * 64, 180, 64), round);
    }
    c.painter.restore();
    c.painter.fillRect(QRectF(806, 186, 128, 18), QColor(60, 60, 66));
    QLinearGradient glass(830, 0, 910, 0);
    glass.setColorAt(0, QColor(200, 226, 236));
    glass.setColorAt(0.5, QColor(255, 244, 190));
    glass.setColorAt(1, QColor(90, 120, 136));
    c.painter.fillRect(QRectF(832, 118, 76, 70), glass);
    for (const double x : {832.0, 856.0, 880.0, 904.0})
        c.painter.fillRect(QRectF(x, 118, 4, 70), QColor(60, 60, 66));
    polygon(c.painter, QColor(178, 42, 40), {QPointF(820, 120), QPointF(870, 62), QPointF(920, 120)});
    paintGlow(c.painter, {870, 152}, 150, QColor(255, 246, 200, 150));
    for (const double y : {300.0, 420.0, 520.0})
        c.painter.fillRect(QRectF(856, y, 20, 34), QColor(52, 52, 62));
    // The keeper's house.
    c.painter.fillRect(QRectF(960, 490, 190, 96), QColor(248, 244, 236));
    polygon(c.painter, QColor(196, 92, 62),
            {QPointF(948, 492), QPointF(984, 436), QPointF(1128, 436), QPointF(1164, 492)});
    for (const double x : {984.0, 1042.0, 1100.0})
        c.painter.fillRect(QRectF(x, 516, 26, 38), QColor(60, 92, 130));

    // Surf at the foot.
    for (int i = 0; i < 900; ++i) {
        const double y = random.between(1000, 1600);
        const double edge =
            430 - 130 * std::pow((y - 830) / 780, 1.5) + 90 * (fractalNoise(y / 70, 0.7, 85) - 0.5);
        const double away = std::pow(random.unit(), 2.2) * (60 + (y - 1000) * 0.35);
        QColor foam(255, 255, 255, 40 + random.below(150));
        ellipse(c.painter, foam, {edge - away + 14, y}, random.between(4, 26), random.between(2, 7));
    }
    for (int i = 0; i < 8; ++i)
        paintBird(c.painter, {random.between(80, 620), random.between(240, 720)}, random.between(26, 60),
                  QColor(250, 250, 250));
    return c.finished(87);
}

} // namespace DemoTrip::Scenes
