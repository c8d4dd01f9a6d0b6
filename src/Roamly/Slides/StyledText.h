// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QList>
#include <QString>
#include <QTextLayout>

namespace Slides {

/// One paragraph with the parts marked that need another font than the rest: emoji, and scripts whose letters
/// combine by rules that only their own font holds. (The text engine finds a font for those by itself, but
/// prefers the text font's black-and-white forms of some emoji, and reports every font that it tries in
/// vain.)
struct StyledText {
    QString text;
    QList<QTextLayout::FormatRange> formats;

    StyledText() = default;
    /// Emoji lose their presentation selectors: the font stands in for them, and they keep the text engine
    /// from joining sequences such as flags and keycaps into one picture.
    StyledText(const QString& paragraph, const QFont& font);

    /// `length` code units from `start`, trailing spaces left out, then an ellipsis.
    [[nodiscard]] StyledText elided(int start, int length) const;
};

} // namespace Slides
