// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideFont.h>

#include <QStringList>

namespace Slides::SlideFont {

namespace {

/// The scripts that travellers' places are written in. What none of these has, the system's own fallback
/// finds.
const QStringList& fallbackFamilies() {
    static const QStringList families{
        QStringLiteral("Noto Sans"),        QStringLiteral("Noto Sans Arabic"),
        QStringLiteral("Noto Sans Hebrew"), QStringLiteral("Noto Sans Devanagari"),
        QStringLiteral("Noto Sans Thai"),   QStringLiteral("Noto Sans CJK JP"),
        QStringLiteral("Noto Color Emoji"), QStringLiteral("DejaVu Sans"),
        QStringLiteral("sans-serif"),
    };
    return families;
}

QFont makeFont(const QStringList& families, int pixelSize, QFont::Weight weight) {
    QFont font(families, -1, weight);
    font.setPixelSize(pixelSize);
    font.setStyle(QFont::StyleNormal);
    font.setStretch(QFont::Unstretched);
    font.setStyleHint(QFont::SansSerif);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

} // namespace

QFont font(Family family, int pixelSize, QFont::Weight weight) {
    QStringList families;
    if (family == Family::display)
        families << QStringLiteral("Inter Display");
    families << QStringLiteral("Inter") << fallbackFamilies();
    return makeFont(families, pixelSize, weight);
}

QFont emojiFont(int pixelSize) {
    return makeFont(QStringList{QStringLiteral("Noto Color Emoji"), QStringLiteral("Inter")}
                        << fallbackFamilies(),
                    pixelSize, QFont::Normal);
}

QFont withFirstFamily(const QFont& font, const QString& family) {
    QFont result = font;
    result.setFamilies(QStringList{family} << font.families());
    return result;
}

} // namespace Slides::SlideFont
