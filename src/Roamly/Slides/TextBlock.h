// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Slides/StyledText.h>

#include <QFont>
#include <QPainter>
#include <QTextLayout>
#include <memory>
#include <string_view>
#include <vector>

namespace Slides {

/// A text laid out into a box: wrapped at word boundaries, or anywhere if need be, and cut short with an
/// ellipsis where it would be taller than the box. Each line of the text is a paragraph of its own, running
/// in the direction its first letters ask for.
class TextBlock {
public:
    enum class Alignment {
        left,
        /// Wrapped to lines of about the same length.
        centre,
    };

    /// `text` in UTF-8; `font` sized in pixels. The block is empty when not even one line fits.
    TextBlock(std::string_view text, const QFont& font, Alignment alignment, int maxWidth, int maxHeight);

    [[nodiscard]] bool isEmpty() const { return m_lines.empty(); }
    /// Whether something had to be left out.
    [[nodiscard]] bool isElided() const { return m_isElided; }
    [[nodiscard]] int lineCount() const { return static_cast<int>(m_lines.size()); }
    /// Of the widest line; at most the box's.
    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }

    /// Draws the block with its top-left corner at `position`. Strokes of letters may reach a little beyond
    /// the block's bounds.
    void draw(QPainter& painter, QPoint position) const;

private:
    struct Line {
        QTextLine line;
        /// Of the line's top edge, from the block's.
        int y = 0;
    };

    void layOut(const std::vector<StyledText>& paragraphs, int width, int maxHeight);
    void balance(const std::vector<StyledText>& paragraphs, int maxHeight);
    void elideLastLine(const StyledText& paragraph, int width);
    QTextLayout& addLayout(const StyledText& text, Qt::LayoutDirection direction);

    QFont m_font;
    Alignment m_alignment;
    std::vector<std::unique_ptr<QTextLayout>> m_layouts;
    std::vector<Line> m_lines;
    int m_layoutWidth = 0;
    int m_width = 0;
    int m_height = 0;
    bool m_isElided = false;
};

} // namespace Slides
