#pragma once

#include <QFont>
#include <QList>
#include <QString>
#include <QTextLayout>

namespace Roamly {

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

/// Where the text holds emoji, the colour font comes before the text font, which has black-and-white forms of
/// some of them. For `QTextLayout::setFormats`.
[[nodiscard]] QList<QTextLayout::FormatRange> emojiFormats(const QString& text, int pixelSize);

} // namespace SlideFont

} // namespace Roamly
