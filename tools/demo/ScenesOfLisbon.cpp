// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Brushes.h"
#include "Canvas.h"
#include "Scenes.h"

#include <QLinearGradient>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <vector>

namespace DemoTrip::Scenes {

QImage rooftops() {
    Canvas c(landscape);
    Random random(11);
    paintGradient(c.painter, c.area(0, 620),
                  {QColor(94, 152, 214), QColor(152, 194, 232), QColor(250, 228, 196)});
    paintClouds(c.painter, c.area(20, 430), QColor(255, 246, 234), 0.52, 12);
    paintWater(c.painter, c.area(520, 640), QColor(150, 184, 210), QColor(120, 160, 196), 13);
    paintRidge(c.painter, {c.width, 600}, 540, 22, 500, QColor(128, 150, 172), QColor(210, 212, 214), 14);

    // The castle on its hill.
    QPainterPath hill(QPointF(-20, 760));
    hill.cubicTo(140, 420, 480, 400, 860, 720);
    hill.lineTo(-20, 800);
    c.painter.setBrush(QColor(108, 128, 92));
    c.painter.drawPath(hill);
    for (int i = 0; i < 70; ++i) {
        const double x = random.between(40, 700);
        const double y = 520 + std::abs(x - 360) * 0.32 + random.between(0, 120);
        paintFoliage(c.painter, {x, y}, random.between(16, 34), QColor(92, 122, 78), random);
    }
    const QColor stone(196, 172, 138);
    const auto wall = [&](double left, double right, double top, double bottom, bool isTower) {
        QLinearGradient light(left, 0, right, 0);
        light.setColorAt(0, toned(stone, 0.16));
        light.setColorAt(1, toned(stone, -0.24));
        c.painter.setPen(Qt::NoPen);
        c.painter.fillRect(QRectF(left, top, right - left, bottom - top),
                           isTower ? QBrush(light) : QBrush(toned(stone, -0.08)));
        for (double x = left; x + 9 <= right; x += 18)
            c.painter.fillRect(QRectF(x, top - 11, 9, 12),
                               isTower ? QBrush(light) : QBrush(toned(stone, -0.08)));
    };
    wall(190, 560, 448, 530, false);
    for (const double x : {180.0, 270.0, 356.0, 444.0, 530.0})
        wall(x, x + 50, 396 + random.between(-14, 14), 530, true);
    c.painter.setPen(QPen(QColor(90, 80, 70), 3));
    c.painter.drawLine(QPointF(381, 400), QPointF(381, 330));
    polygon(c.painter, QColor(40, 128, 74), {QPointF(383, 330), QPointF(432, 340), QPointF(383, 356)});

    // The town comes down the slope towards the viewer.
    for (int row = 0; row < 7; ++row) {
        const double nearness = row / 6.0;
        HouseStyle style;
        style.walls = paleWalls();
        style.roofs = clayRoofs();
        style.minWidth = 46 + 110 * nearness;
        style.maxWidth = 86 + 170 * nearness;
        style.minHeight = 60 + 90 * nearness;
        style.maxHeight = 110 + 150 * nearness;
        style.windowWidth = 7 + 16 * nearness;
        style.haze = QColor(214, 214, 220);
        style.hazeAmount = 0.42 * (1 - nearness);
        paintHouses(c.painter, -60 - 30 * row, c.width + 60, 690 + 84 * row, style, random);
        for (int i = 0; i < 4; ++i)
            paintFoliage(c.painter, {random.unit() * c.width, 690 + 84.0 * row}, 18 + 26 * nearness,
                         blended(QColor(86, 120, 70), style.haze, style.hazeAmount), random);
    }
    // Bougainvillea over the parapet of the viewpoint.
    c.painter.fillRect(c.area(1120, 1200), QColor(228, 216, 196));
    c.painter.fillRect(c.area(1112, 1128), QColor(246, 238, 224));
    for (int i = 0; i < 26; ++i) {
        const double x = std::pow(random.unit(), 1.8) * 620;
        paintFoliage(c.painter, {x, 1160 - (620 - x) * 0.36 * random.unit()}, random.between(26, 60),
                     random.chance(0.6) ? QColor(206, 52, 128) : QColor(74, 116, 62), random);
    }
    for (const QPointF at : {QPointF(1010, 210), QPointF(1074, 250), QPointF(1180, 190), QPointF(940, 280)})
        paintBird(c.painter, at, random.between(30, 52), QColor(60, 66, 80));
    return c.finished(15);
}

QImage tramStreet() {
    Canvas c(portrait);
    Random random(21);
    const QPointF vanishing(610, 700);
    paintGradient(c.painter, c.area(0, 760),
                  {QColor(86, 154, 220), QColor(180, 212, 238), QColor(250, 238, 214)});
    paintClouds(c.painter, c.area(0, 560), QColor(255, 250, 244), 0.5, 22);

    // Cobbles.
    paintGradient(c.painter, c.area(700, 1600),
                  {QColor(172, 156, 140), QColor(138, 124, 114), QColor(104, 96, 92)});
    for (double y = 704; y < 1600;) {
        const double depth = (y - 700) / 900;
        const double size = 3 + 30 * depth;
        for (double x = random.between(-size, 0); x < c.width; x += size * 1.35) {
            QColor stone = toned(QColor(150, 138, 128), random.between(-0.3, 0.24));
            stone.setAlpha(150);
            ellipse(c.painter, stone, {x, y}, size * 0.6, size * 0.34);
        }
        y += size * 0.62;
    }
    for (const double side : {-1.0, 1.0})
        polygon(c.painter, QColor(70, 70, 76),
                {vanishing + QPointF(side * 2, 8), vanishing + QPointF(side * 2 + 1.5, 8),
                 QPointF(560 + side * 270 + 9, 1600), QPointF(560 + side * 270 - 9, 1600)});

    // Both sides of the street are painted flat and then turned into the depth.
    for (const bool isLeft : {true, false}) {
        QImage facade(1500, 1000, QImage::Format_ARGB32_Premultiplied);
        facade.fill(Qt::transparent);
        {
            QPainter p(&facade);
            p.setRenderHint(QPainter::Antialiasing);
            HouseStyle style;
            style.walls = brightWalls();
            style.roofs = clayRoofs();
            style.minWidth = 190;
            style.maxWidth = 280;
            style.minHeight = 680;
            style.maxHeight = 860;
            style.windowWidth = 42;
            style.hasBalconies = true;
            paintHouses(p, 0, 1500, 1000, style, random);
            for (double x = 40; x < 1500; x += 240) {
                p.fillRect(QRectF(x, 800, 84, 200), QColor(66, 46, 40));
                p.fillRect(QRectF(x + 8, 812, 68, 188), isLeft ? QColor(52, 92, 76) : QColor(120, 50, 46));
            }
        }
        QTransform turn;
        const QPolygonF flat(QList<QPointF>{{0, 0}, {1500, 0}, {1500, 1000}, {0, 1000}});
        const QPolygonF left(QList<QPointF>{{-40, -560}, {560, 430}, {560, 712}, {-40, 1560}});
        const QPolygonF right(QList<QPointF>{{670, 450}, {1240, -520}, {1240, 1500}, {670, 712}});
        if (!QTransform::quadToQuad(flat, isLeft ? left : right, turn))
            continue;
        c.painter.save();
        c.painter.setTransform(turn);
        c.painter.drawImage(0, 0, facade);
        c.painter.restore();
    }
    // One side lies in the shade, and so does the end of the street.
    polygon(c.painter, QColor(40, 34, 66, 96),
            {QPointF(0, 0), QPointF(560, 430), QPointF(560, 712), QPointF(0, 1540)});
    polygon(c.painter, QColor(40, 34, 66, 60),
            {QPointF(560, 712), QPointF(820, 1600), QPointF(0, 1600), QPointF(0, 1540)});

    // The tram.
    c.painter.setPen(QPen(QColor(48, 48, 56), 2.4));
    c.painter.drawLine(QPointF(0, 160), vanishing + QPointF(0, -210));
    c.painter.drawLine(QPointF(1200, 80), vanishing + QPointF(8, -214));
    c.painter.drawLine(QPointF(565, 640), QPointF(600, 470));
    ellipse(c.painter, QColor(20, 16, 24, 120), {566, 1236}, 232, 34);
    QLinearGradient yellow(360, 0, 770, 0);
    yellow.setColorAt(0, QColor(214, 156, 16));
    yellow.setColorAt(0.3, QColor(252, 204, 46));
    yellow.setColorAt(1, QColor(240, 184, 30));
    c.painter.setPen(Qt::NoPen);
    c.painter.setBrush(yellow);
    c.painter.drawRoundedRect(QRectF(362, 930, 408, 280), 26, 26);
    c.painter.setBrush(QColor(248, 244, 232));
    c.painter.drawRoundedRect(QRectF(370, 660, 392, 300), 40, 40);
    c.painter.setBrush(QColor(232, 224, 206));
    c.painter.drawRoundedRect(QRectF(392, 636, 348, 44), 20, 20);
    for (const QRectF pane :
         {QRectF(392, 742, 104, 176), QRectF(508, 742, 116, 176), QRectF(636, 742, 104, 176)}) {
        QLinearGradient glass(pane.topLeft(), pane.bottomRight());
        glass.setColorAt(0, QColor(150, 186, 214));
        glass.setColorAt(0.5, QColor(62, 82, 104));
        glass.setColorAt(1, QColor(38, 46, 62));
        c.painter.setBrush(glass);
        c.painter.setPen(QPen(QColor(150, 110, 40), 5));
        c.painter.drawRoundedRect(pane, 8, 8);
    }
    c.painter.setPen(Qt::NoPen);
    c.painter.fillRect(QRectF(486, 688, 160, 42), QColor(34, 34, 40));
    for (int i = 0; i < 15; ++i)
        c.painter.fillRect(QRectF(502 + i * 9, 700 + (i * 7) % 12, 6, 10), QColor(255, 196, 60));
    c.painter.fillRect(QRectF(362, 936, 408, 12), QColor(196, 64, 48));
    paintGlow(c.painter, {566, 1050}, 110, QColor(255, 250, 214, 170));
    ellipse(c.painter, QColor(90, 84, 76), {566, 1050}, 46, 46);
    ellipse(c.painter, QColor(255, 252, 230), {566, 1050}, 37, 37);
    for (const double x : {430.0, 702.0}) {
        ellipse(c.painter, QColor(120, 40, 34), {x, 1096}, 20, 20);
        ellipse(c.painter, QColor(240, 96, 70), {x, 1096}, 14, 14);
    }
    c.painter.fillRect(QRectF(352, 1196, 428, 24), QColor(70, 62, 58));
    c.painter.fillRect(QRectF(420, 1220, 292, 22), QColor(40, 38, 40));
    return c.finished(23);
}

QImage cafe() {
    Canvas c(landscape);
    Random random(31);
    // A wall of tiles.
    const double side = 118;
    for (double y = -20; y < 660; y += side) {
        for (double x = -30; x < c.width; x += side) {
            const QColor glaze = toned(QColor(238, 240, 238), random.between(-0.08, 0.06));
            c.painter.setPen(QPen(QColor(206, 206, 202), 2));
            c.painter.setBrush(glaze);
            c.painter.drawRect(QRectF(x, y, side, side));
            c.painter.save();
            c.painter.setClipRect(QRectF(x + 1, y + 1, side - 2, side - 2));
            const QColor blue = toned(QColor(36, 84, 162), random.between(-0.15, 0.2));
            c.painter.setBrush(Qt::NoBrush);
            c.painter.setPen(QPen(blue, 9));
            for (const QPointF corner :
                 {QPointF(x, y), QPointF(x + side, y), QPointF(x, y + side), QPointF(x + side, y + side)})
                c.painter.drawEllipse(corner, side * 0.44, side * 0.44);
            c.painter.setPen(QPen(toned(blue, 0.4), 3));
            for (const QPointF corner :
                 {QPointF(x, y), QPointF(x + side, y), QPointF(x, y + side), QPointF(x + side, y + side)})
                c.painter.drawEllipse(corner, side * 0.33, side * 0.33);
            const QPointF middle(x + side / 2, y + side / 2);
            for (int petal = 0; petal < 4; ++petal) {
                c.painter.save();
                c.painter.translate(middle);
                c.painter.rotate(petal * 90);
                ellipse(c.painter, blue, {0, -side * 0.14}, side * 0.05, side * 0.12);
                c.painter.restore();
            }
            ellipse(c.painter, QColor(236, 188, 72), middle, side * 0.05, side * 0.05);
            c.painter.restore();
        }
    }
    paintNoise(c.painter, c.area(0, 660), 500, 300, 32, [](double noise, double) {
        return QColor(255, 250, 226, std::clamp(static_cast<int>((noise - 0.42) * 420), 0, 120));
    });
    // A table of old wood.
    paintGradient(c.painter, c.area(640, 1200),
                  {QColor(150, 96, 58), QColor(176, 116, 70), QColor(126, 78, 48)});
    paintNoise(c.painter, c.area(640, 1200), 520, 9, 33, [](double noise, double) {
        return QColor(58, 30, 16, std::clamp(static_cast<int>((noise - 0.45) * 520), 0, 130));
    });
    for (const double y : {640.0, 752.0, 900.0, 1080.0})
        c.painter.fillRect(QRectF(0, y, c.width, 5), QColor(54, 30, 20, 190));
    paintGradient(c.painter, c.area(640, 690), {QColor(40, 20, 10, 120), QColor(40, 20, 10, 0)});

    // Coffee.
    ellipse(c.painter, QColor(30, 14, 8, 120), {1180, 932}, 250, 92);
    ellipse(c.painter, QColor(244, 242, 238), {1150, 900}, 232, 88);
    ellipse(c.painter, QColor(214, 212, 210), {1150, 896}, 150, 54);
    QPainterPath cup(QPointF(1000, 730));
    cup.cubicTo(1010, 880, 1070, 906, 1150, 906);
    cup.cubicTo(1230, 906, 1290, 880, 1300, 730);
    cup.closeSubpath();
    QLinearGradient china(1000, 0, 1300, 0);
    china.setColorAt(0, QColor(255, 255, 253));
    china.setColorAt(0.6, QColor(240, 238, 236));
    china.setColorAt(1, QColor(196, 192, 194));
    c.painter.setPen(QPen(QColor(232, 230, 228), 26));
    c.painter.setBrush(Qt::NoBrush);
    c.painter.drawEllipse(QPointF(1312, 790), 48, 46);
    c.painter.setPen(Qt::NoPen);
    c.painter.setBrush(china);
    c.painter.drawPath(cup);
    ellipse(c.painter, QColor(250, 250, 248), {1150, 730}, 150, 50);
    ellipse(c.painter, QColor(92, 52, 28), {1150, 734}, 134, 41);
    ellipse(c.painter, QColor(192, 136, 84), {1150, 736}, 122, 36);
    for (int i = 0; i < 160; ++i) {
        const double angle = random.unit() * 2 * M_PI;
        const double r = std::sqrt(random.unit());
        QColor foam = random.chance(0.5) ? QColor(222, 176, 120) : QColor(150, 96, 54);
        foam.setAlpha(120);
        ellipse(c.painter, foam, QPointF(1150 + std::cos(angle) * r * 112, 736 + std::sin(angle) * r * 31),
                random.between(2, 11), random.between(1, 4));
    }
    for (int i = 0; i < 3; ++i) {
        QPainterPath steam(QPointF(1090 + i * 56, 700));
        steam.cubicTo(1050 + i * 56, 600, 1150 + i * 52, 540, 1090 + i * 62, 400);
        c.painter.setBrush(Qt::NoBrush);
        for (const double width : {46.0, 30.0, 14.0}) {
            c.painter.setPen(QPen(QColor(255, 255, 255, 16), width, Qt::SolidLine, Qt::RoundCap));
            c.painter.drawPath(steam);
        }
    }

    // A plate of custard tarts.
    ellipse(c.painter, QColor(30, 14, 8, 120), {530, 1010}, 420, 134);
    ellipse(c.painter, QColor(248, 247, 244), {500, 976}, 400, 132);
    ellipse(c.painter, QColor(226, 224, 222), {500, 972}, 316, 96);
    c.painter.setPen(QPen(QColor(44, 92, 168), 6));
    c.painter.setBrush(Qt::NoBrush);
    c.painter.drawEllipse(QPointF(500, 976), 376, 122);
    for (const QPointF at : {QPointF(500, 878), QPointF(348, 940), QPointF(640, 946), QPointF(492, 1000)}) {
        ellipse(c.painter, QColor(60, 34, 16, 90), at + QPointF(12, 40), 118, 46);
        QPainterPath crust(at + QPointF(-112, -6));
        crust.cubicTo(at + QPointF(-96, 74), at + QPointF(96, 74), at + QPointF(112, -6));
        crust.closeSubpath();
        c.painter.setPen(Qt::NoPen);
        c.painter.setBrush(QColor(214, 150, 78));
        c.painter.drawPath(crust);
        for (int fold = -5; fold <= 5; ++fold) {
            c.painter.setPen(QPen(QColor(168, 104, 46, 150), 4));
            c.painter.drawLine(at + QPointF(fold * 20, 2), at + QPointF(fold * 15, 48 - std::abs(fold) * 5));
        }
        ellipse(c.painter, QColor(232, 178, 100), at + QPointF(0, -6), 114, 44);
        ellipse(c.painter, QColor(250, 206, 92), at + QPointF(0, -6), 96, 35);
        for (int i = 0; i < 26; ++i) {
            const double angle = random.unit() * 2 * M_PI;
            const double r = std::sqrt(random.unit());
            QColor burnt(108, 52, 18, 60 + random.below(130));
            ellipse(c.painter, burnt, at + QPointF(std::cos(angle) * r * 82, -6 + std::sin(angle) * r * 28),
                    random.between(4, 20), random.between(2, 8));
        }
        ellipse(c.painter, QColor(255, 250, 226, 110), at + QPointF(-34, -20), 24, 6);
    }
    // Morning sun from the left.
    QLinearGradient sun(0, 0, c.width, 300);
    sun.setColorAt(0, QColor(255, 226, 160, 90));
    sun.setColorAt(0.6, QColor(255, 220, 150, 0));
    sun.setColorAt(1, QColor(30, 20, 50, 90));
    c.painter.fillRect(c.image.rect(), sun);
    return c.finished(34);
}

QImage bridge() {
    Canvas c(landscape);
    const double horizon = 800;
    paintGradient(c.painter, c.area(0, horizon),
                  {QColor(72, 96, 156), QColor(150, 136, 176), QColor(244, 176, 140), QColor(255, 214, 150)});
    paintClouds(c.painter, c.area(60, 560), QColor(255, 206, 176), 0.55, 41);
    paintSun(c.painter, {380, 720}, 44, QColor(255, 226, 150));
    paintRidge(c.painter, {c.width, horizon}, 742, 40, 620, QColor(112, 104, 134), QColor(226, 168, 150), 42);
    paintRidge(c.painter, {c.width, horizon}, 782, 22, 320, QColor(84, 80, 108), QColor(196, 150, 142), 43);

    const QColor steel(186, 58, 46);
    const QColor dark(120, 34, 36);
    const double deck = 600;
    const double towers[] = {470, 1230};
    // The main cable hangs in a parabola between the towers and runs down to the banks outside them.
    const auto cable = [&](double x) {
        if (x < towers[0])
            return 170 + (towers[0] - x) * (430.0 / 620);
        if (x > towers[1])
            return 170 + (x - towers[1]) * (430.0 / 620);
        const double t = (x - towers[0]) / (towers[1] - towers[0]) * 2 - 1;
        return 170 + (1 - t * t) * 390;
    };
    c.painter.setPen(QPen(QColor(130, 50, 48, 220), 2));
    for (double x = -60; x < c.width + 60; x += 19)
        c.painter.drawLine(QPointF(x, std::min(cable(x), deck)), QPointF(x, deck));
    QPainterPath line(QPointF(-60, cable(-60)));
    for (double x = -60; x <= c.width + 60; x += 5)
        line.lineTo(x, cable(x));
    c.painter.setBrush(Qt::NoBrush);
    c.painter.setPen(QPen(steel, 8));
    c.painter.drawPath(line);
    // The deck and its truss.
    c.painter.fillRect(QRectF(0, deck - 6, c.width, 12), steel);
    c.painter.fillRect(QRectF(0, deck + 40, c.width, 9), dark);
    c.painter.setPen(QPen(dark, 4));
    for (double x = -40; x < c.width; x += 38) {
        c.painter.drawLine(QPointF(x, deck + 44), QPointF(x + 19, deck));
        c.painter.drawLine(QPointF(x + 19, deck), QPointF(x + 38, deck + 44));
    }
    for (const double x : towers) {
        QLinearGradient light(x - 34, 0, x + 34, 0);
        light.setColorAt(0, toned(steel, 0.25));
        light.setColorAt(1, dark);
        for (const double leg : {-34.0, 20.0})
            c.painter.fillRect(QRectF(x + leg, 150, 14, horizon - 150), light);
        c.painter.setPen(QPen(steel, 7));
        for (double y = 160; y < horizon - 60; y += 78) {
            c.painter.drawLine(QPointF(x - 28, y), QPointF(x + 28, y + 78));
            c.painter.drawLine(QPointF(x + 28, y), QPointF(x - 28, y + 78));
        }
        c.painter.fillRect(QRectF(x - 42, 146, 84, 16), steel);
        c.painter.fillRect(QRectF(x - 62, horizon - 36, 124, 44), QColor(170, 150, 140));
    }
    for (int i = 0; i < 46; ++i)
        c.painter.fillRect(QRectF(20 + i * 34.5, deck - 12, 9, 6),
                           i % 3 == 0 ? QColor(255, 240, 200) : QColor(90, 40, 44));

    const QRectF water = c.area(horizon, c.height);
    paintWater(c.painter, water, QColor(236, 180, 150), QColor(58, 66, 104), 44);
    paintReflection(c.painter, c.image.copy(), water, 0.42, 45);
    paintGlitter(c.painter, water, 380, QColor(255, 236, 186), 46);
    paintSailboat(c.painter, {960, 870}, 74, QColor(60, 44, 60), QColor(252, 226, 206));
    paintSailboat(c.painter, {780, 838}, 40, QColor(70, 54, 70), QColor(244, 214, 200));
    return c.finished(47);
}

QImage sunset(double moment) {
    Canvas c(landscape);
    const double drift = 9 * moment;
    const double horizon = 690 + drift * 0.5;
    paintGradient(c.painter, c.area(0, horizon),
                  {QColor(40, 48, 104), QColor(122, 78, 138), QColor(232, 112, 92), QColor(255, 190, 96)});
    paintClouds(c.painter, c.area(80, 620).translated(drift, 0), QColor(255, 150, 120), 0.54, 51);
    paintSun(c.painter, {900 + drift, horizon - 62}, 58, QColor(255, 214, 112));
    // The headland.
    c.painter.save();
    c.painter.translate(drift - 20, drift * 0.5);
    QPainterPath cliff(QPointF(-20, 700));
    for (double x = -20; x <= 430; x += 6)
        cliff.lineTo(x, 690 - 190 * std::pow(1 - (x + 20) / 450, 1.4) -
                            26 * (fractalNoise(x / 60, 0.3, 52) - 0.5));
    cliff.lineTo(430, 700);
    c.painter.setPen(Qt::NoPen);
    c.painter.setBrush(QColor(44, 32, 62));
    c.painter.drawPath(cliff);
    c.painter.restore();

    const QRectF water = c.area(horizon, c.height);
    paintWater(c.painter, water, QColor(250, 160, 104), QColor(40, 38, 88), 53);
    paintReflection(c.painter, c.image.copy(), water, 0.35, 54);
    paintGlitter(c.painter, water, 900 + drift, QColor(255, 226, 150), 55);
    paintSailboat(c.painter, {560 + 46 * moment, horizon + 44}, 116, QColor(36, 26, 48), QColor(70, 44, 72));
    Random random(56);
    for (int i = 0; i < 7; ++i)
        paintBird(c.painter, {1100 + random.unit() * 360 - 30 * moment, 190 + random.unit() * 220},
                  random.between(24, 54), QColor(40, 28, 56));
    return c.finished(57);
}

} // namespace DemoTrip::Scenes
