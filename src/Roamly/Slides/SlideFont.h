// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QString>

namespace Slides {

/// The typefaces of a slideshow's texts. Sizes are pixels of the frame: neither the screen's resolution nor a
/// scale factor nor the user's font settings have a say, so that a film looks the same wherever it is made.
namespace SlideFont {

enum class Family {
    /// For running text.
    text,
    /// The cut of the same design that is meant for large sizes.
    display,
};

[[nodiscard]] QFont font(Family family, int pixelSize, QFont::Weight weight);

/// For emoji in colour.
[[nodiscard]] QFont emojiFont(int pixelSize);

/// `font`, but with one family preferred to its own.
[[nodiscard]] QFont withFirstFamily(const QFont& font, const QString& family);

} // namespace SlideFont

} // namespace Slides
