// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/TextBlock.h>

#include <QString>
#include <QStringList>
#include <QTextBoundaryFinder>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace Slides {

namespace {

/// More than any frame can show; a novel pasted as a caption must not cost a novel's layout.
constexpr qsizetype maxLength = 40'000;

/// Above this many lines, nobody sees whether they are equally long.
constexpr int maxBalancedLines = 4;

/// The text's paragraphs, free of characters that are neither shown nor steer how others are shown.
std::vector<StyledText> paragraphs(std::string_view text, const QFont& font) {
    QString string = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    string.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar& character : string) {
        switch (character.unicode()) {
        case u'\r':
        case u'\v':
        case u'\f':
        case 0x85:
        case QChar::LineSeparator:
        case QChar::ParagraphSeparator:
            character = u'\n';
            break;
        case QChar::ObjectReplacementCharacter:
            character = QChar::ReplacementCharacter;
            break;
        default:
            if (character.category() == QChar::Other_Control && character != u'\n')
                character = u' ';
        }
    }
    string = string.trimmed();
    if (string.size() > maxLength) {
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, string);
        finder.setPosition(maxLength);
        finder.toPreviousBoundary();
        string.truncate(finder.position());
    }
    std::vector<StyledText> result;
    if (!string.isEmpty()) {
        for (const QString& paragraph : string.split(u'\n'))
            result.emplace_back(paragraph, font);
    }
    return result;
}

/// The direction of the first letter that has one.
Qt::LayoutDirection directionOf(const StyledText& paragraph) {
    return paragraph.text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
}

int ceiled(qreal value) {
    return static_cast<int>(std::ceil(value));
}

} // namespace

TextBlock::TextBlock(std::string_view text, const QFont& font, Alignment alignment, int maxWidth,
                     int maxHeight)
    : m_font(font)
    , m_alignment(alignment) {
    // In less than the width of one ideograph there is nothing to read.
    if (maxWidth < font.pixelSize())
        return;
    const std::vector<StyledText> parts = paragraphs(text, font);
    layOut(parts, maxWidth, maxHeight);
    if (alignment == Alignment::centre && parts.size() == 1 && !m_isElided && lineCount() > 1 &&
        lineCount() <= maxBalancedLines)
        balance(parts, maxHeight);
}

QTextLayout& TextBlock::addLayout(const StyledText& text, Qt::LayoutDirection direction) {
    QTextLayout& layout = *m_layouts.emplace_back(std::make_unique<QTextLayout>(text.text, m_font));
    QTextOption option(m_alignment == Alignment::centre ? Qt::Alignment(Qt::AlignHCenter)
                                                        : Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(direction);
    layout.setTextOption(option);
    layout.setFormats(text.formats);
    layout.setCacheEnabled(true);
    return layout;
}

void TextBlock::layOut(const std::vector<StyledText>& paragraphs, int width, int maxHeight) {
    m_layouts.clear();
    m_lines.clear();
    m_layoutWidth = width;
    m_width = 0;
    m_height = 0;
    m_isElided = false;
    for (std::size_t i = 0; i < paragraphs.size() && !m_isElided; ++i) {
        QTextLayout& layout = addLayout(paragraphs[i], directionOf(paragraphs[i]));
        layout.beginLayout();
        while (!m_isElided) {
            QTextLine line = layout.createLine();
            if (!line.isValid())
                break;
            line.setLineWidth(width);
            const int height = ceiled(line.height());
            if (m_height + height > maxHeight) {
                m_isElided = true;
                break;
            }
            m_lines.push_back({line, m_height});
            m_height += height;
        }
        layout.endLayout();
        if (m_isElided && !m_lines.empty()) {
            const bool isFirstOfParagraph = layout.lineCount() <= 1;
            elideLastLine(paragraphs[isFirstOfParagraph ? i - 1 : i], width);
        }
    }
    for (const Line& line : m_lines)
        m_width = std::max(m_width, std::min(width, ceiled(line.line.naturalTextWidth())));
}

void TextBlock::elideLastLine(const StyledText& paragraph, int width) {
    Line& last = m_lines.back();
    const int start = last.line.textStart();
    const QString text = paragraph.text.mid(start, last.line.textLength());
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    std::vector<int> cuts{0};
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary())
        cuts.push_back(static_cast<int>(next));

    const auto attempt = [&](int length) {
        QTextLayout& layout = addLayout(paragraph.elided(start, length), directionOf(paragraph));
        layout.beginLayout();
        QTextLine line = layout.createLine();
        line.setLineWidth(width);
        layout.endLayout();
        return line;
    };
    const auto fits = [&](int length) {
        const QTextLine line = attempt(length);
        const bool isWhole = m_layouts.back()->text().size() == line.textLength();
        const bool isInside = line.naturalTextWidth() <= width;
        m_layouts.pop_back();
        return isWhole && isInside;
    };
    // Shaping makes widths only nearly monotonic, which is good enough: what the search ends at was measured.
    auto low = cuts.begin();
    for (auto high = cuts.end(); high - low > 1;) {
        const auto middle = low + (high - low) / 2;
        (fits(*middle) ? low : high) = middle;
    }
    last.line = attempt(*low);
}

void TextBlock::balance(const std::vector<StyledText>& paragraphs, int maxHeight) {
    const int lines = lineCount();
    const int wholeWidth = m_layoutWidth;
    int tooNarrow = wholeWidth / (lines + 1);
    int enough = wholeWidth;
    while (enough - tooNarrow > 1) {
        const int width = (tooNarrow + enough) / 2;
        layOut(paragraphs, width, maxHeight);
        (lineCount() == lines && !m_isElided ? enough : tooNarrow) = width;
    }
    layOut(paragraphs, enough, maxHeight);
}

void TextBlock::draw(QPainter& painter, QPoint position) const {
    // The lines were laid out in a box that may be wider than the widest of them.
    const int left =
        m_alignment == Alignment::centre ? position.x() - (m_layoutWidth - m_width) / 2 : position.x();
    for (const Line& line : m_lines) {
        // Baselines on whole pixels keep the horizontal strokes of letters crisp.
        const qreal baseline = std::round(line.line.ascent());
        line.line.draw(&painter, QPointF(left, position.y() + line.y + baseline - line.line.ascent()));
    }
}

} // namespace Slides
