#include "Scenes.h"

#include "Brushes.h"

#include <QLinearGradient>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace DemoTrip::Scenes {

namespace {

constexpr QSize landscape(1600, 1200);
constexpr QSize portrait(1200, 1600);

/// A picture and the brush to paint it with.
struct Canvas {
    QImage image;
    QPainter painter;
    double width;
    double height;

    explicit Canvas(QSize size)
        : image(size, QImage::Format_RGB32)
        , width(size.width())
        , height(size.height()) {
        image.fill(Qt::black);
        painter.begin(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.setPen(Qt::NoPen);
    }

    [[nodiscard]] QRectF area(double top, double bottom) const { return {0, top, width, bottom - top}; }

    QImage finished(std::uint32_t seed) {
        painter.end();
        finish(image, seed);
        return image;
    }
};

const std::vector<QColor> paleWalls{QColor(246, 238, 222), QColor(250, 246, 238), QColor(240, 214, 176),
                                    QColor(238, 196, 170), QColor(244, 226, 160), QColor(220, 228, 232)};
const std::vector<QColor> brightWalls{QColor(214, 96, 70),   QColor(236, 176, 72), QColor(92, 138, 178),
                                      QColor(232, 220, 196), QColor(190, 72, 80),  QColor(240, 204, 120),
                                      QColor(126, 160, 132), QColor(248, 242, 230)};
const std::vector<QColor> clayRoofs{QColor(196, 96, 62), QColor(178, 84, 58), QColor(208, 116, 74)};

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
        style.walls = paleWalls;
        style.roofs = clayRoofs;
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
            style.walls = brightWalls;
            style.roofs = clayRoofs;
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
        far.walls = paleWalls;
        far.roofs = clayRoofs;
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
        style.walls = paleWalls;
        style.roofs = clayRoofs;
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
    front.walls = brightWalls;
    front.roofs = clayRoofs;
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
