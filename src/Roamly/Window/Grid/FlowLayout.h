// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Grid/Sections.h>

#include <QPoint>
#include <QRect>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace Grid {

/// Where cells and headers lie, in the content's coordinates: y grows downwards from the first header, x from
/// the viewport's left. Cells flow along lines, from right to left where the interface does, and each section
/// begins a new line under its header. Takes time in proportion to the sections, not to the rows. A plain
/// value.
class FlowLayout {
public:
    struct Metrics {
        /// Of the viewport, in pixels.
        int width = 0;
        /// About how wide tiles are to be; the line's width is shared out so that tiles fill it.
        int tileSide = 192;
        /// Under the tile, for the caption.
        int captionHeight = 24;
        int headerHeight = 48;
        bool isRightToLeft = false;

        friend bool operator==(const Metrics&, const Metrics&) = default;
    };
    static constexpr int gap = 12;
    /// On either side, and under the last line.
    static constexpr int margin = 16;

    FlowLayout() = default;
    FlowLayout(const std::vector<Section>& sections, const Metrics& metrics);

    [[nodiscard]] int columns() const { return m_columns; }
    /// The width and height of the square tiles.
    [[nodiscard]] int tileSide() const { return m_side; }
    [[nodiscard]] int headerHeight() const { return m_metrics.headerHeight; }
    [[nodiscard]] int contentHeight() const { return m_height; }
    [[nodiscard]] int rowCount() const { return m_rowCount; }

    /// The cell: tile and caption. Empty for a row that is not there.
    [[nodiscard]] QRect cell(int row) const;
    [[nodiscard]] int sectionCount() const { return static_cast<int>(m_sections.size()); }
    [[nodiscard]] QRect header(int section) const;
    /// The section whose header or cells lie at that height; nothing where there are no sections.
    [[nodiscard]] std::optional<int> sectionAt(int y) const;
    [[nodiscard]] int sectionOf(int row) const;
    /// The header that stays on top of a viewport scrolled that far, and where in the viewport it is: the
    /// next one pushes it away. Nothing where there is no section.
    struct StickyHeader {
        int section;
        QRect area;
    };
    [[nodiscard]] std::optional<StickyHeader> stickyHeader(int offset) const;
    /// First row and one past the last.
    [[nodiscard]] std::pair<int, int> rowsOf(int section) const;

    /// The cell that holds the point; nothing between cells.
    [[nodiscard]] std::optional<int> rowAt(const QPoint& point) const;
    /// Rows whose cells touch the rectangle, as ranges of first and last, ascending.
    [[nodiscard]] std::vector<std::pair<int, int>> rowsIn(const QRect& rectangle) const;

    /// From the top of one line to that of the next.
    [[nodiscard]] int lineHeight() const;
    /// The row `lines` lines below (above, where negative) in about the same column; the first or last row
    /// beyond the ends.
    [[nodiscard]] int rowAcross(int row, int lines) const;

    /// A place between two rows of one line.
    struct Slot {
        int row = 0;
        /// Beside which side of that row's cell the place is, in reading order.
        bool isAfter = false;

        friend bool operator==(const Slot&, const Slot&) = default;
    };
    /// The place nearest to a point, as things that are dropped there shall land; nothing without rows.
    [[nodiscard]] std::optional<Slot> slotAt(const QPoint& point) const;
    /// The line drawn at that place, 2 wide and as high as a tile.
    [[nodiscard]] QRect slotMark(const Slot& slot) const;

private:
    struct Block {
        int first;
        int count;
        /// Of the header.
        int top;
        int lines;
    };

    [[nodiscard]] int linesTop(const Block& block) const { return block.top + m_metrics.headerHeight; }
    [[nodiscard]] int columnX(int column) const;
    /// The column, between 0 and the last, whose cell or the gap after it holds x.
    [[nodiscard]] int columnAt(int x) const;
    [[nodiscard]] const Block& blockOf(int row) const;

    Metrics m_metrics;
    std::vector<Block> m_sections;
    int m_columns = 1;
    int m_side = 0;
    int m_height = 0;
    int m_rowCount = 0;
};

} // namespace Grid
