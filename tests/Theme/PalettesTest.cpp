// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/Palettes.h>

#include <gtest/gtest.h>

namespace {

using Theme::contrast;
using Theme::Scheme;

TEST(Palettes, ContrastIsTheGuidelines) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21.0, 1e-9);
    EXPECT_NEAR(contrast(Qt::white, Qt::white), 1.0, 1e-9);
    // The grey that the guidelines' own examples give as just enough on white.
    EXPECT_NEAR(contrast(QColor{0x76, 0x76, 0x76}, Qt::white), 4.54, 0.01);
}

TEST(Palettes, TextIsLegibleWhateverTheAccent) {
    for (const Scheme scheme : {Scheme::Light, Scheme::Dark}) {
        for (int hue = 0; hue < 360; hue += 15) {
            for (const int lightness : {0, 30, 80, 128, 180, 230, 255}) {
                const QPalette palette = Theme::palette(scheme, QColor::fromHsl(hue, 200, lightness));
                SCOPED_TRACE(testing::Message() << "hue " << hue << ", lightness " << lightness << ", dark "
                                                << (scheme == Scheme::Dark));
                EXPECT_GE(
                    contrast(palette.color(QPalette::Highlight), palette.color(QPalette::HighlightedText)),
                    4.5);
                EXPECT_GE(contrast(palette.color(QPalette::Highlight), palette.color(QPalette::Window)), 3.0);
                EXPECT_GE(contrast(palette.color(QPalette::Link), palette.color(QPalette::Base)), 4.5);
            }
        }
    }
}

TEST(Palettes, OrdinaryAndQuietTextIsLegible) {
    for (const Scheme scheme : {Scheme::Light, Scheme::Dark}) {
        const QPalette palette = Theme::palette(scheme, Theme::defaultAccent());
        EXPECT_GE(contrast(palette.color(QPalette::WindowText), palette.color(QPalette::Window)), 7.0);
        EXPECT_GE(contrast(palette.color(QPalette::Text), palette.color(QPalette::Base)), 7.0);
        EXPECT_GE(contrast(palette.color(QPalette::PlaceholderText), palette.color(QPalette::Base)), 4.5);
        const Theme::Colours colours = Theme::colours(palette);
        EXPECT_EQ(colours.isDark, scheme == Scheme::Dark);
        EXPECT_GE(contrast(colours.quietText, colours.background), 4.5);
        EXPECT_GE(contrast(colours.onDanger, colours.danger), 4.5);
    }
}

TEST(Palettes, TheAccentStaysWhereItIsLegible) {
    const QColor blue{0x1a, 0x5f, 0xb4};
    EXPECT_EQ(Theme::legibleAccent(blue, Scheme::Light).rgb(), blue.rgb());
}

TEST(Palettes, WithoutAnAccentThereIsOne) {
    EXPECT_EQ(Theme::palette(Scheme::Light, QColor{}), Theme::palette(Scheme::Light, Theme::defaultAccent()));
}

} // namespace
