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

QImage riverside() {
    Canvas c(landscape);
    Random random(91);
    const double quay = 830;
    paintGradient(c.painter, c.area(0, quay),
                  {QColor(88, 150, 216), QColor(164, 202, 234), QColor(250, 236, 214)});
    paintClouds(c.painter, c.area(0, 460), QColor(255, 250, 244), 0.54, 92);

    paintRidge(c.painter, {c.width, quay + 60}, 660, 90, 520, QColor(124, 148, 128), QColor(206, 212, 204),
               96);
    {
        HouseStyle far;
        far.walls = paleWalls();
        far.roofs = clayRoofs();
        far.minWidth = 40;
        far.maxWidth = 74;
        far.minHeight = 44;
        far.maxHeight = 96;
        far.windowWidth = 7;
        far.haze = QColor(214, 218, 222);
        far.hazeAmount = 0.3;
        for (const double ground : {730.0, 780.0, 846.0})
            paintHouses(c.painter, 1010, c.width + 40, ground, far, random);
        c.painter.fillRect(QRectF(1000, 842, 600, 40), QColor(150, 142, 132));
    }
    // The upper town.
    for (int row = 0; row < 3; ++row) {
        HouseStyle style;
        style.walls = paleWalls();
        style.roofs = clayRoofs();
        style.minWidth = 60 + 12 * row;
        style.maxWidth = 110 + 16 * row;
        style.minHeight = 90;
        style.maxHeight = 170;
        style.windowWidth = 10 + row;
        style.haze = QColor(220, 220, 226);
        style.hazeAmount = 0.4 - 0.11 * row;
        c.painter.save();
        c.painter.translate(0, 60);
        c.painter.rotate(4);
        paintHouses(c.painter, -40, 1150 - 70 * row, 420 + 80 * row, style, random);
        c.painter.restore();
    }
    // The iron bridge: an arch between two decks.
    const QColor iron(96, 104, 116);
    const auto arch = [](double x, double rise) {
        const double t = (x - 900) / 800 * 2 - 1;
        return 800 - rise * (1 - t * t);
    };
    c.painter.setPen(QPen(iron, 4));
    for (double x = 900; x < 1700; x += 26) {
        c.painter.drawLine(QPointF(x, arch(x, 430)), QPointF(x + 26, arch(x + 26, 372)));
        c.painter.drawLine(QPointF(x, arch(x, 372)), QPointF(x + 26, arch(x + 26, 430)));
        c.painter.drawLine(QPointF(x, arch(x, 430)), QPointF(x, 352));
    }
    for (const double rise : {430.0, 372.0}) {
        QPainterPath line(QPointF(900, arch(900, rise)));
        for (double x = 900; x <= 1700; x += 6)
            line.lineTo(x, arch(x, rise));
        c.painter.setBrush(Qt::NoBrush);
        c.painter.setPen(QPen(toned(iron, -0.2), 11));
        c.painter.drawPath(line);
    }
    c.painter.fillRect(QRectF(820, 340, 800, 18), toned(iron, -0.25));
    c.painter.fillRect(QRectF(820, 326, 800, 5), iron);
    for (double x = 820; x < 1600; x += 14)
        c.painter.fillRect(QRectF(x, 328, 3, 14), iron);
    c.painter.fillRect(QRectF(860, 746, 760, 14), toned(iron, -0.25));

    HouseStyle front;
    front.walls = brightWalls();
    front.roofs = clayRoofs();
    front.minWidth = 92;
    front.maxWidth = 138;
    front.minHeight = 330;
    front.maxHeight = 440;
    front.windowWidth = 21;
    front.hasBalconies = true;
    paintHouses(c.painter, -30, 1010, quay - 6, front, random);
    for (double x = 10; x < 980; x += 108) {
        c.painter.fillRect(QRectF(x, quay - 92, 60, 86), QColor(54, 44, 44));
        QPainterPath awning(QPointF(x - 14, quay - 92));
        awning.lineTo(x + 74, quay - 92);
        awning.lineTo(x + 88, quay - 62);
        awning.lineTo(x - 28, quay - 62);
        c.painter.setPen(Qt::NoPen);
        c.painter.setBrush(random.chance(0.5) ? QColor(214, 70, 60) : QColor(244, 238, 222));
        c.painter.drawPath(awning);
    }
    c.painter.fillRect(QRectF(0, quay - 8, 1100, 60), QColor(176, 162, 146));
    for (double x = 0; x < 1100; x += 44)
        c.painter.fillRect(QRectF(x, quay + 4, 40, 42),
                           toned(QColor(166, 152, 136), random.between(-0.15, 0.1)));

    const QRectF water = c.area(quay + 50, c.height);
    paintWater(c.painter, water, QColor(136, 168, 182), QColor(42, 84, 104), 93);
    paintReflection(c.painter, c.image.copy(), water, 0.45, 94);
    // A boat with barrels, as they once carried the wine.
    const QPointF boat(700, 1010);
    QPainterPath hull(boat + QPointF(-300, -40));
    hull.cubicTo(boat + QPointF(-200, 60), boat + QPointF(220, 66), boat + QPointF(330, -60));
    hull.lineTo(boat + QPointF(250, 0));
    hull.cubicTo(boat + QPointF(100, 22), boat + QPointF(-150, 18), boat + QPointF(-300, -40));
    ellipse(c.painter, QColor(10, 30, 44, 120), boat + QPointF(0, 56), 310, 20);
    c.painter.setBrush(QColor(70, 44, 30));
    c.painter.drawPath(hull);
    for (int i = 0; i < 5; ++i) {
        const QRectF barrel(boat.x() - 130 + i * 52, boat.y() - 34, 48, 44);
        QLinearGradient round(barrel.topLeft(), barrel.bottomLeft());
        round.setColorAt(0, QColor(206, 146, 88));
        round.setColorAt(1, QColor(112, 68, 40));
        c.painter.setBrush(round);
        c.painter.setPen(QPen(QColor(60, 44, 36), 3));
        c.painter.drawRoundedRect(barrel, 14, 14);
        c.painter.drawLine(barrel.topLeft() + QPointF(14, 0), barrel.bottomLeft() + QPointF(14, 0));
        c.painter.drawLine(barrel.topRight() - QPointF(14, 0), barrel.bottomRight() - QPointF(14, 0));
    }
    c.painter.setPen(QPen(QColor(60, 40, 30), 8));
    c.painter.drawLine(boat + QPointF(10, -20), boat + QPointF(10, -330));
    polygon(c.painter, QColor(246, 240, 226),
            {boat + QPointF(-120, -310), boat + QPointF(140, -320), boat + QPointF(150, -110),
             boat + QPointF(-110, -90)});
    polygon(c.painter, QColor(196, 60, 56),
            {boat + QPointF(-30, -240), boat + QPointF(60, -244), boat + QPointF(62, -170),
             boat + QPointF(-28, -166)});
    return c.finished(95);
}

QImage nightSkyline() {
    Canvas c(landscape);
    Random random(101);
    const double shore = 800;
    paintGradient(c.painter, c.area(0, shore),
                  {QColor(10, 14, 38), QColor(24, 32, 78), QColor(84, 66, 122), QColor(206, 120, 110)});
    for (int i = 0; i < 420; ++i) {
        QColor star(255, 250, 236, 60 + random.below(180));
        const double r = random.between(0.6, 1.9);
        ellipse(c.painter, star, {random.unit() * c.width, std::pow(random.unit(), 1.5) * 480}, r, r);
    }
    paintGlow(c.painter, {1260, 190}, 260, QColor(236, 236, 255, 110));
    QPainterPath moon;
    moon.addEllipse(QPointF(1260, 190), 50, 50);
    QPainterPath shadow;
    shadow.addEllipse(QPointF(1234, 178), 48, 48);
    c.painter.setBrush(QColor(250, 248, 236));
    c.painter.drawPath(moon.subtracted(shadow));
    paintRidge(c.painter, {c.width, shore}, 690, 46, 520, QColor(40, 38, 74), QColor(96, 66, 100), 102);

    // Houses and towers, each window lit or not.
    for (int row = 0; row < 3; ++row) {
        const QColor dark = blended(QColor(48, 44, 84), QColor(16, 16, 34), row / 2.0);
        for (double x = -20; x < c.width;) {
            const double width = random.between(50, 120);
            const double height = random.between(60, 150) + (random.chance(0.14) ? 110 : 0) + 36 * (2 - row);
            const double top = shore - height;
            c.painter.setPen(Qt::NoPen);
            c.painter.fillRect(QRectF(x, top, width + 1, height), toned(dark, random.between(-0.1, 0.1)));
            if (random.chance(0.6))
                polygon(c.painter, dark,
                        {QPointF(x - 3, top + 1), QPointF(x + width / 2, top - width * 0.28),
                         QPointF(x + width + 3, top + 1)});
            for (double wy = top + 14; wy < shore - 16; wy += 22) {
                for (double wx = x + 9; wx < x + width - 12; wx += 18) {
                    if (random.chance(0.46)) {
                        const QColor light =
                            random.chance(0.8) ? QColor(255, 206, 120) : QColor(190, 220, 255);
                        c.painter.fillRect(QRectF(wx, wy, 7, 10), toned(light, random.between(-0.35, 0.2)));
                    }
                }
            }
            x += width;
        }
    }
    // A church tower, lit from below.
    QLinearGradient lit(0, 470, 0, 790);
    lit.setColorAt(0, QColor(150, 112, 86));
    lit.setColorAt(1, QColor(255, 214, 140));
    c.painter.fillRect(QRectF(560, 500, 86, 300), lit);
    c.painter.fillRect(QRectF(550, 490, 106, 16), lit);
    polygon(c.painter, QColor(168, 124, 92), {QPointF(566, 492), QPointF(603, 372), QPointF(640, 492)});
    for (const double y : {530.0, 620.0, 700.0}) {
        c.painter.setBrush(QColor(60, 40, 44));
        c.painter.drawRoundedRect(QRectF(590, y, 26, 48), 13, 13);
    }
    for (double x = 20; x < c.width; x += 66) {
        paintGlow(c.painter, {x, shore - 14}, 44, QColor(255, 214, 130, 190));
        ellipse(c.painter, QColor(255, 244, 214), {x, shore - 14}, 4, 4);
    }
    c.painter.fillRect(QRectF(0, shore - 4, c.width, 10), QColor(40, 32, 44));
    const QRectF water = c.area(shore + 6, c.height);
    paintWater(c.painter, water, QColor(80, 62, 104), QColor(8, 12, 34), 103);
    paintReflection(c.painter, c.image.copy(), water, 0.62, 104);
    for (double x = 20; x < c.width; x += 66) {
        for (int i = 0; i < 46; ++i) {
            const double depth = random.unit();
            QColor dab(255, 206, 120, static_cast<int>(110 * (1 - depth)));
            ellipse(c.painter, dab, {x + random.between(-1, 1) * (3 + 15 * depth), water.top() + depth * 300},
                    random.between(3, 14), 1.6);
        }
    }
    return c.finished(105);
}

QImage beach() {
    Canvas c(landscape);
    Random random(111);
    paintGradient(c.painter, c.area(0, 470),
                  {QColor(52, 136, 220), QColor(128, 192, 238), QColor(222, 240, 246)});
    paintClouds(c.painter, c.area(40, 430), QColor(255, 255, 255), 0.5, 112);
    paintWater(c.painter, c.area(460, 760), QColor(40, 126, 176), QColor(92, 200, 204), 113);
    paintSailboat(c.painter, {1120, 478}, 62, QColor(240, 240, 240), QColor(255, 255, 255));
    paintSailboat(c.painter, {350, 470}, 34, QColor(230, 230, 230), QColor(255, 240, 230));

    // Sand, wet along the water.
    QPainterPath sand(QPointF(-10, 1210));
    for (double x = -10; x <= 1610; x += 6)
        sand.lineTo(x, 740 - x * 0.05 + 34 * (fractalNoise(x / 260, 0.4, 114) - 0.5));
    sand.lineTo(1610, 1210);
    c.painter.save();
    c.painter.setClipPath(sand);
    paintGradient(
        c.painter, c.area(650, 1200),
        {QColor(186, 158, 120), QColor(238, 212, 164), QColor(246, 224, 180), QColor(232, 204, 156)});
    paintNoise(c.painter, c.area(650, 1200), 130, 16, 115, [](double noise, double) {
        return noise > 0.5 ? QColor(255, 246, 214, std::clamp(static_cast<int>((noise - 0.5) * 420), 0, 110))
                           : QColor(150, 112, 70, std::clamp(static_cast<int>((0.5 - noise) * 420), 0, 100));
    });
    for (int i = 0; i < 5200; ++i) {
        QColor speck = random.chance(0.5) ? QColor(160, 124, 84, 90) : QColor(255, 250, 228, 110);
        const double r = random.between(0.6, 1.8);
        ellipse(c.painter, speck, {random.unit() * c.width, random.between(760, 1200)}, r * 1.4, r);
    }
    c.painter.restore();
    for (int wave = 0; wave < 4; ++wave) {
        for (int i = 0; i < 620; ++i) {
            const double x = random.unit() * c.width;
            const double edge = 740 - x * 0.05 + 34 * (fractalNoise(x / 260, 0.4, 114) - 0.5);
            const double y = edge - wave * 34 - 10 * smoothNoise(x / 90, wave, 116) + random.between(-5, 5);
            QColor foam(255, 255, 255, (60 + random.below(140)) / (wave + 1));
            ellipse(c.painter, foam, {x, y}, random.between(4, 22), random.between(1.5, 5));
        }
    }

    const auto parasol = [&](QPointF foot, double size, const QColor& a, const QColor& b) {
        ellipse(c.painter, QColor(90, 60, 40, 100), foot + QPointF(size * 0.5, size * 0.1), size * 0.75,
                size * 0.17);
        c.painter.setPen(QPen(QColor(244, 240, 232), size * 0.04));
        c.painter.drawLine(foot, foot + QPointF(-size * 0.12, -size * 1.3));
        const QPointF top = foot + QPointF(-size * 0.12, -size * 1.36);
        QPainterPath canopy(top + QPointF(-size * 0.8, size * 0.5));
        canopy.cubicTo(top + QPointF(-size * 0.6, -size * 0.1), top + QPointF(size * 0.6, -size * 0.1),
                       top + QPointF(size * 0.8, size * 0.5));
        for (int scallop = 4; scallop > 0; --scallop) {
            const double from = -0.8 + 0.4 * scallop;
            canopy.quadTo(top + QPointF(size * (from - 0.2), size * 0.38),
                          top + QPointF(size * (from - 0.4), size * 0.5));
        }
        c.painter.save();
        c.painter.setClipPath(canopy);
        c.painter.setPen(Qt::NoPen);
        c.painter.fillRect(canopy.boundingRect(), a);
        for (int stripe = 0; stripe < 4; stripe += 2)
            polygon(c.painter, b,
                    {top + QPointF(0, -size * 0.1), top + QPointF(size * (-0.8 + 0.4 * stripe), size * 0.55),
                     top + QPointF(size * (-0.4 + 0.4 * stripe), size * 0.55)});
        QLinearGradient light(top - QPointF(size * 0.8, 0), top + QPointF(size * 0.8, 0));
        light.setColorAt(0, QColor(255, 255, 255, 70));
        light.setColorAt(1, QColor(40, 10, 40, 90));
        c.painter.fillRect(canopy.boundingRect(), light);
        c.painter.restore();
    };
    const auto towel = [&](QPointF at, double size, const QColor& colour) {
        polygon(c.painter, colour,
                {at, at + QPointF(size, -size * 0.06), at + QPointF(size * 1.3, size * 0.34),
                 at + QPointF(size * 0.18, size * 0.44)});
        polygon(c.painter, toned(colour, 0.5),
                {at + QPointF(size * 0.3, -size * 0.02), at + QPointF(size * 0.42, -size * 0.026),
                 at + QPointF(size * 0.66, size * 0.38), at + QPointF(size * 0.52, size * 0.4)});
    };
    towel({520, 880}, 120, QColor(76, 148, 196));
    parasol({470, 890}, 130, QColor(240, 92, 76), QColor(252, 248, 240));
    parasol({980, 820}, 84, QColor(250, 204, 80), QColor(252, 248, 240));
    parasol({1390, 850}, 104, QColor(64, 150, 176), QColor(252, 248, 240));
    towel({1150, 1010}, 190, QColor(232, 110, 90));
    parasol({1080, 1050}, 220, QColor(58, 124, 190), QColor(250, 246, 236));
    // A ball.
    ellipse(c.painter, QColor(90, 60, 40, 110), {316, 1090}, 66, 17);
    ellipse(c.painter, QColor(252, 250, 244), {300, 1046}, 52, 52);
    for (int sector = 0; sector < 6; sector += 2) {
        c.painter.setBrush(sector == 0 ? QColor(232, 70, 62)
                                       : (sector == 2 ? QColor(250, 200, 60) : QColor(56, 128, 200)));
        c.painter.setPen(Qt::NoPen);
        c.painter.drawPie(QRectF(248, 994, 104, 104), (sector * 60 + 20) * 16, 60 * 16);
    }
    paintGlow(c.painter, {282, 1024}, 46, QColor(255, 255, 255, 170));
    for (int i = 0; i < 5; ++i)
        paintBird(c.painter, {random.between(700, 1300), random.between(130, 330)}, random.between(30, 56),
                  QColor(250, 250, 250));
    return c.finished(117);
}

QImage vineyards() {
    Canvas c(landscape);
    Random random(121);
    paintGradient(c.painter, c.area(0, 620),
                  {QColor(106, 160, 216), QColor(176, 206, 228), QColor(252, 236, 202)});
    paintClouds(c.painter, c.area(0, 380), QColor(255, 250, 240), 0.52, 122);
    paintSun(c.painter, {1240, 250}, 40, QColor(255, 240, 186));
    paintRidge(c.painter, {c.width, 900}, 430, 110, 620, QColor(138, 154, 182), QColor(222, 222, 222), 123);
    paintRidge(c.painter, {c.width, 960}, 520, 100, 480, QColor(116, 142, 148), QColor(210, 214, 200), 124);

    // Terraces: rows of vines that follow the shape of the hill.
    const auto hill = [&](double base, double relief, double feature, std::uint32_t seed, const QColor& vine,
                          const QColor& earth, double spacing) {
        const QPainterPath shape = ridge(c.width, c.height + 10, base, relief, feature, seed);
        c.painter.save();
        c.painter.setClipPath(shape);
        QLinearGradient ground(0, base - relief, 0, c.height);
        ground.setColorAt(0, toned(earth, 0.12));
        ground.setColorAt(1, toned(earth, -0.2));
        c.painter.fillRect(shape.boundingRect(), ground);
        c.painter.setPen(Qt::NoPen);
        double step = spacing;
        for (double down = 8; down < c.height - base + relief; down += step, step *= 1.045) {
            for (double x = -10; x < c.width + 10; x += step * 0.34) {
                const double crest = base - relief * (fractalNoise(x / feature, 0.5, seed, 7) - 0.5) * 2;
                const double y = crest + down + 26 * std::sin(x / 240 + down / 130);
                QColor leaf = toned(vine, random.between(-0.28, 0.22));
                leaf.setAlpha(225);
                ellipse(c.painter, leaf, {x + random.between(-2, 2), y + random.between(-1.5, 1.5)},
                        step * 0.26, step * 0.2);
            }
        }
        c.painter.restore();
    };
    hill(640, 90, 520, 125, QColor(128, 156, 88), QColor(196, 172, 128), 11);
    // The river winds between the hills.
    QPainterPath river(QPointF(700, 700));
    river.cubicTo(1100, 730, 1250, 780, 900, 830);
    river.cubicTo(560, 880, 420, 960, 700, 1210);
    river.lineTo(1180, 1210);
    river.cubicTo(900, 1000, 900, 930, 1180, 860);
    river.cubicTo(1440, 790, 1240, 710, 740, 690);
    river.closeSubpath();
    c.painter.save();
    c.painter.setClipPath(river);
    paintWater(c.painter, c.area(680, 1200), QColor(206, 218, 214), QColor(66, 112, 134), 126);
    c.painter.restore();
    // White farms with their cypresses.
    for (const QPointF at : {QPointF(360, 720), QPointF(1330, 730), QPointF(220, 900)}) {
        const double s = at.y() / 800;
        c.painter.fillRect(QRectF(at.x(), at.y() - 40 * s, 92 * s, 42 * s), QColor(250, 246, 238));
        polygon(c.painter, QColor(196, 96, 62),
                {at + QPointF(-6, -39 * s), at + QPointF(16 * s, -64 * s), at + QPointF(78 * s, -64 * s),
                 at + QPointF(98 * s, -39 * s)});
        for (int i = 0; i < 3; ++i)
            c.painter.fillRect(QRectF(at.x() + (12 + i * 28) * s, at.y() - 28 * s, 12 * s, 15 * s),
                               QColor(70, 90, 110));
        for (const double x : {-22.0, 112.0, 132.0})
            ellipse(c.painter, QColor(46, 76, 48), at + QPointF(x * s, -34 * s), 9 * s, 44 * s);
    }
    // Vines close by, on the bank where we stand.
    const QPainterPath bank = [&] {
        QPainterPath path(QPointF(0, 960));
        path.cubicTo(280, 980, 420, 1080, 560, 1210);
        path.lineTo(0, 1210);
        return path;
    }();
    c.painter.setBrush(QColor(150, 122, 84));
    c.painter.drawPath(bank);
    for (int i = 0; i < 34; ++i) {
        const double t = random.unit();
        paintFoliage(c.painter, {t * 480 - 20, 985 + t * t * 210 + random.between(0, 130)},
                     random.between(30, 56), QColor(98, 138, 58), random);
    }
    for (int i = 0; i < 9; ++i) {
        const QPointF bunch(random.between(20, 380), random.between(1040, 1170));
        for (int grape = 0; grape < 15; ++grape) {
            const QPointF at = bunch + QPointF(random.between(-15, 15), random.between(-10, 34));
            ellipse(c.painter, QColor(82, 40, 96), at, 8, 8);
            ellipse(c.painter, QColor(190, 150, 206, 170), at - QPointF(2.5, 3), 2.4, 2.4);
        }
    }
    return c.finished(127);
}

} // namespace DemoTrip::Scenes
