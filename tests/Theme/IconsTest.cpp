// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Icons.h>
#include <Roamly/Window/Theme/Theme.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <cstdlib>

namespace {

void use(Theme::Scheme scheme) {
    Theme::apply(*qobject_cast<QApplication*>(QCoreApplication::instance()), scheme);
}

/// The sum of the picture's alpha, 0…255 a pixel.
long ink(const QPixmap& pixmap) {
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    long sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y));
    return sum;
}

/// The colour of the picture's most opaque pixel.
QColor colourOf(const QPixmap& pixmap) {
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    QRgb strongest = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > qAlpha(strongest))
                strongest = image.pixel(x, y);
    return QColor::fromRgb(strongest);
}

TEST(Icons, TheFamilyHasWhatTheWindowNeeds) {
    for (const char* const name :
         {"import",        "folder",  "album",       "analyze",    "captions",       "prompt", "settings",
          "more",          "play",    "pause",       "previous",   "next",           "mute",   "sound",
          "close",         "export",  "music",       "undo",       "redo",           "search", "filter",
          "check",         "stack",   "approximate", "missing",    "shield-warning", "place",  "trash",
          "show-in-files", "zoom-in", "zoom-out",    "fullscreen", "info",           "help",   "warning",
          "retry",         "cancel",  "sources",     "reset",      "sort",           "loupe",  "compare",
          "person"}) {
        const QIcon icon = Theme::icon(QString::fromLatin1(name));
        EXPECT_FALSE(icon.isNull()) << name;
        EXPECT_GT(ink(icon.pixmap(QSize{24, 24}, 1.0)), 24 * 24) << name << " draws nothing";
    }
}

TEST(Icons, AnUnknownNameIsANullIcon) {
    EXPECT_TRUE(Theme::icon(QStringLiteral("no such icon")).isNull());
}

TEST(Icons, FollowThePaletteWithoutBeingMadeAgain) {
    use(Theme::Scheme::Light);
    const QIcon icon = Theme::icon(QStringLiteral("play"));
    EXPECT_LT(colourOf(icon.pixmap(QSize{32, 32}, 1.0)).lightness(), 64);
    use(Theme::Scheme::Dark);
    EXPECT_GT(colourOf(icon.pixmap(QSize{32, 32}, 1.0)).lightness(), 192);
}

TEST(Icons, ThatCanNotBeUsedAreFainter) {
    use(Theme::Scheme::Light);
    const QIcon icon = Theme::icon(QStringLiteral("export"));
    EXPECT_LT(2 * ink(icon.pixmap(QSize{32, 32}, 1.0, QIcon::Disabled)),
              ink(icon.pixmap(QSize{32, 32}, 1.0)));
}

TEST(Icons, AreDrawnInTheColourAskedFor) {
    EXPECT_EQ(colourOf(Theme::icon(QStringLiteral("pause"), Qt::white).pixmap(QSize{32, 32}, 1.0)),
              QColor{Qt::white});
}

TEST(Icons, AreSharpAtTheDevicesPixels) {
    const QPixmap pixmap = Theme::icon(QStringLiteral("folder")).pixmap(QSize{24, 24}, 2.0);
    EXPECT_EQ(pixmap.size(), (QSize{48, 48}));
    EXPECT_EQ(pixmap.devicePixelRatio(), 2.0);
}

TEST(Icons, TheProgramsOwnIsInColour) {
    EXPECT_GT(Theme::programIcon().pixmap(QSize{64, 64}, 1.0).toImage().pixelColor(12, 20).saturation(), 64);
}

/// All icons side by side, where somebody asks to see them.
TEST(Icons, ContactSheet) {
    const char* const folder = std::getenv("ROAMLY_PICTURES");
    if (!folder)
        GTEST_SKIP() << "ROAMLY_PICTURES names no folder";
    const QStringList names = Theme::iconNames();
    for (const Theme::Scheme scheme : {Theme::Scheme::Light, Theme::Scheme::Dark}) {
        use(scheme);
        constexpr int columns = 6;
        const int rows = (static_cast<int>(names.size()) + columns - 1) / columns;
        QImage sheet{columns * 200, rows * 64 + 280, QImage::Format_RGB32};
        sheet.fill(QGuiApplication::palette().color(QPalette::Window));
        QPainter painter{&sheet};
        for (int index = 0; index < static_cast<int>(names.size()); ++index) {
            int x = 8 + index % columns * 200;
            const int y = 8 + index / columns * 64;
            for (const int side : {16, 24, 32}) {
                Theme::icon(names[index]).paint(&painter, x, y, side, side);
                x += side + 8;
            }
            Theme::icon(names[index]).paint(&painter, x, y, 24, 24, Qt::AlignCenter, QIcon::Disabled);
            painter.setPen(QGuiApplication::palette().color(QPalette::WindowText));
            painter.drawText(8 + index % columns * 200, y + 50, names[index]);
        }
        int x = 8;
        for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
            Theme::programIcon().paint(&painter, x, rows * 64 + 12, side, side);
            x += side + 16;
        }
        QIcon{QStringLiteral(":/icons/application-x-roamly.svg")}.paint(&painter, x, rows * 64 + 12, 128,
                                                                        128);
        painter.end();
        EXPECT_TRUE(sheet.save(QStringLiteral("%1/icons-%2.png")
                                   .arg(QString::fromLocal8Bit(folder), scheme == Theme::Scheme::Dark
                                                                            ? QStringLiteral("dark")
                                                                            : QStringLiteral("light"))));
    }
}

} // namespace
