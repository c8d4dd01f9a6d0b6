// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Palettes.h>

#include <algorithm>
#include <cmath>

namespace Theme {

namespace {

constexpr double textContrast = 4.5;
constexpr double lineContrast = 3.0;

/// Relative luminance of sRGB, 0…1.
double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

struct Greys {
    QColor window;
    QColor base;
    QColor raised;
    QColor text;
    QColor faint;
    QColor disabled;
    QColor line;
};

Greys greys(Scheme scheme) {
    if (scheme == Scheme::Dark)
        return {.window = QColor{0x1f, 0x1f, 0x1f},
                .base = QColor{0x2a, 0x2a, 0x2a},
                .raised = QColor{0x36, 0x36, 0x36},
                .text = QColor{0xf0, 0xf0, 0xf0},
                .faint = QColor{0xa8, 0xa8, 0xa8},
                .disabled = QColor{0x7a, 0x7a, 0x7a},
                .line = QColor{0x3d, 0x3d, 0x3d}};
    return {.window = QColor{0xf5, 0xf5, 0xf5},
            .base = QColor{0xff, 0xff, 0xff},
            .raised = QColor{0xff, 0xff, 0xff},
            .text = QColor{0x1c, 0x1c, 0x1c},
            .faint = QColor{0x5c, 0x5c, 0x5c},
            .disabled = QColor{0x9a, 0x9a, 0x9a},
            .line = QColor{0xd6, 0xd6, 0xd6}};
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor textOn(const QColor& colour) {
    // White looks right on most accents, so it stays wherever it is legible.
    return contrast(colour, Qt::white) >= textContrast ? QColor{Qt::white} : QColor{0x10, 0x10, 0x10};
}

QColor legibleAccent(const QColor& accent, Scheme scheme) {
    const QColor behind = greys(scheme).window;
    const QColor text = scheme == Scheme::Dark ? textOn(accent) : QColor{Qt::white};
    QColor result = accent.toHsl();
    // Steps of one lightness: the nearest colour of that hue that will do. Dark accents on dark grey go up,
    // where black text takes over from white in the end.
    for (int step = 0; step < 256; ++step) {
        const bool onIsLegible =
            contrast(result, scheme == Scheme::Dark ? textOn(result) : text) >= textContrast;
        const bool isVisible = contrast(result, behind) >= lineContrast;
        if (onIsLegible && isVisible)
            break;
        const int lightness = result.lightness() + (scheme == Scheme::Dark ? 1 : -1);
        if (lightness < 0 || lightness > 255)
            break;
        result.setHsl(result.hslHue(), result.hslSaturation(), lightness);
    }
    return result.toRgb();
}

QColor defaultAccent() {
    return QColor{0x2f, 0x6f, 0xde};
}

QPalette palette(Scheme scheme, const QColor& accent) {
    const Greys grey = greys(scheme);
    const QColor legible = legibleAccent(accent.isValid() ? accent : defaultAccent(), scheme);
    QPalette result;
    const auto set = [&result](QPalette::ColorRole role, const QColor& colour) {
        result.setColor(role, colour);
    };
    set(QPalette::Window, grey.window);
    set(QPalette::WindowText, grey.text);
    set(QPalette::Base, grey.base);
    set(QPalette::AlternateBase, grey.window);
    set(QPalette::Text, grey.text);
    set(QPalette::Button, grey.raised);
    set(QPalette::ButtonText, grey.text);
    set(QPalette::BrightText, Qt::white);
    set(QPalette::PlaceholderText, grey.faint);
    set(QPalette::ToolTipBase, grey.raised);
    set(QPalette::ToolTipText, grey.text);
    set(QPalette::Highlight, legible);
    set(QPalette::HighlightedText, textOn(legible));
    // Links are text: they need the contrast of text on what is behind them.
    QColor link = legible;
    while (contrast(link, grey.base) < textContrast && link.lightness() > 1 && link.lightness() < 254)
        link = scheme == Scheme::Dark ? link.lighter(105) : link.darker(105);
    set(QPalette::Link, link);
    set(QPalette::LinkVisited, link);
    set(QPalette::Light, scheme == Scheme::Dark ? QColor{0x48, 0x48, 0x48} : QColor{Qt::white});
    set(QPalette::Midlight, grey.line);
    set(QPalette::Mid, scheme == Scheme::Dark ? QColor{0x55, 0x55, 0x55} : QColor{0xb4, 0xb4, 0xb4});
    set(QPalette::Dark, scheme == Scheme::Dark ? QColor{0x14, 0x14, 0x14} : QColor{0xa0, 0xa0, 0xa0});
    set(QPalette::Shadow, Qt::black);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        result.setColor(QPalette::Disabled, role, grey.disabled);
    result.setColor(QPalette::Disabled, QPalette::Highlight, grey.line);
    result.setColor(QPalette::Disabled, QPalette::HighlightedText, grey.disabled);
    return result;
}

} // namespace Theme
