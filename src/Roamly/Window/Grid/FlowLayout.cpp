// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/FlowLayout.h>

#include <algorithm>
#include <cmath>

namespace Grid {

FlowLayout::FlowLayout(const std::vector<Section>& sections, const Metrics& metrics)
    : m_metrics(metrics) {
    const int room = std::max(1, metrics.width - 2 * margin);
    m_columns = std::max(
        1, static_cast<int>(std::lround(static_cast<double>(room + gap) / (metrics.tileSide + gap))));
    m_side = std::max(1, (room + gap) / m_columns - gap);
    m_sections.reserve(sections.size());
    int top = 0;
    for (const Section& section : sections) {
        const int count = static_cast<int>(section.count);
        const int lines = (count + m_columns - 1) / m_columns;
        m_sections.push_back({static_cast<int>(section.first), count, top, lines});
        top += metrics.headerHeight + lines * lineHeight();
        m_rowCount += count;
    }
    m_height = m_sections.empty() ? 0 : top - gap + margin;
}

int FlowLayout::lineHeight() const {
    return m_side + m_metrics.captionHeight + gap;
}

int FlowLayout::columnX(int column) const {
    const int x = margin + column * (m_side + gap);
    return m_metrics.isRightToLeft ? m_metrics.width - x - m_side : x;
}

int FlowLayout::columnAt(int x) const {
    const int along = (m_metrics.isRightToLeft ? m_metrics.width - x : x) - margin;
    return std::clamp(along / (m_side + gap), 0, m_columns - 1);
}

const FlowLayout::Block& FlowLayout::blockOf(int row) const {
    return m_sections[static_cast<std::size_t>(sectionOf(row))];
}

int FlowLayout::sectionOf(int row) const {
    const auto after = std::upper_bound(m_sections.begin(), m_sections.end(), row,
                                        [](int wanted, const Block& block) { return wanted < block.first; });
    return std::max(0, static_cast<int>(after - m_sections.begin()) - 1);
}

std::pair<int, int> FlowLayout::rowsOf(int section) const {
    const Block& block = m_sections[static_cast<std::size_t>(section)];
    return {block.first, block.first + block.count};
}

QRect FlowLayout::cell(int row) const {
    if (row < 0 || row >= m_rowCount)
        return {};
    const Block& block = blockOf(row);
    const int within = row - block.first;
    return {columnX(within % m_columns), linesTop(block) + within / m_columns * lineHeight(), m_side,
            m_side + m_metrics.captionHeight};
}

QRect FlowLayout::header(int section) const {
    return {0, m_sections[static_cast<std::size_t>(section)].top, m_metrics.width, m_metrics.headerHeight};
}

std::optional<int> FlowLayout::sectionAt(int y) const {
    if (m_sections.empty())
        return std::nullopt;
    const auto after = std::upper_bound(m_sections.begin(), m_sections.end(), y,
                                        [](int wanted, const Block& block) { return wanted < block.top; });
    return std::max(0, static_cast<int>(after - m_sections.begin()) - 1);
}

std::optional<FlowLayout::StickyHeader> FlowLayout::stickyHeader(int offset) const {
    const std::optional<int> section = sectionAt(offset);
    if (!section)
        return std::nullopt;
    QRect area = header(*section);
    area.moveTop(0);
    if (*section + 1 < sectionCount())
        area.moveTop(std::min(0, header(*section + 1).top() - offset - area.height()));
    return StickyHeader{*section, area};
}

std::optional<int> FlowLayout::rowAt(const QPoint& point) const {
    const auto rows = rowsIn({point, QSize{1, 1}});
    return rows.empty() ? std::nullopt : std::optional{rows.front().first};
}

std::vector<std::pair<int, int>> FlowLayout::rowsIn(const QRect& rectangle) const {
    std::vector<std::pair<int, int>> ranges;
    const QRect wanted = rectangle.normalized();
    const std::optional<int> firstSection = sectionAt(wanted.top());
    if (!firstSection || wanted.isEmpty())
        return ranges;

    // Columns whose cells, without the gaps, touch the rectangle.
    int firstColumn = m_columns;
    int lastColumn = -1;
    for (int column = 0; column < m_columns; ++column) {
        const int x = columnX(column);
        if (x <= wanted.right() && x + m_side > wanted.left()) {
            firstColumn = std::min(firstColumn, column);
            lastColumn = std::max(lastColumn, column);
        }
    }
    if (lastColumn < 0)
        return ranges;

    for (std::size_t section = static_cast<std::size_t>(*firstSection);
         section < m_sections.size() && m_sections[section].top <= wanted.bottom(); ++section) {
        const Block& block = m_sections[section];
        const int above = wanted.top() - linesTop(block);
        const int below = wanted.bottom() - linesTop(block);
        if (below < 0)
            continue;
        int line = std::max(0, above / lineHeight());
        if (above - line * lineHeight() >= lineHeight() - gap)
            ++line;
        const int lastLine = std::min(block.lines - 1, below / lineHeight());
        for (; line <= lastLine; ++line) {
            const int first = line * m_columns + firstColumn;
            const int last = std::min(line * m_columns + lastColumn, block.count - 1);
            if (first > last)
                continue;
            const std::pair<int, int> range{block.first + first, block.first + last};
            if (!ranges.empty() && ranges.back().second + 1 == range.first)
                ranges.back().second = range.second;
            else
                ranges.push_back(range);
        }
    }
    return ranges;
}

int FlowLayout::rowAcross(int row, int lines) const {
    if (m_rowCount == 0)
        return 0;
    int section = sectionOf(row);
    const Block* block = &m_sections[static_cast<std::size_t>(section)];
    const int column = (row - block->first) % m_columns;
    int line = (row - block->first) / m_columns + lines;
    while (line < 0) {
        if (section == 0)
            return 0;
        block = &m_sections[static_cast<std::size_t>(--section)];
        line += block->lines;
    }
    while (line >= block->lines) {
        if (section + 1 == sectionCount())
            return m_rowCount - 1;
        line -= block->lines;
        block = &m_sections[static_cast<std::size_t>(++section)];
    }
    return block->first + std::min(line * m_columns + column, block->count - 1);
}

std::optional<FlowLayout::Slot> FlowLayout::slotAt(const QPoint& point) const {
    const std::optional<int> section = sectionAt(point.y());
    if (!section)
        return std::nullopt;
    const Block& block = m_sections[static_cast<std::size_t>(*section)];
    const int line = std::clamp((point.y() - linesTop(block)) / lineHeight(), 0, block.lines - 1);
    const int column = columnAt(point.x());
    const int within = std::min(line * m_columns + column, block.count - 1);
    const int row = block.first + within;
    const bool isRightHalf = point.x() > cell(row).center().x();
    const bool isAfter = isRightHalf != m_metrics.isRightToLeft;
    // Between two cells of one line there is one place only: before the later one.
    const bool hasNextInLine = within + 1 < block.count && (within + 1) % m_columns != 0;
    if (isAfter && hasNextInLine)
        return Slot{row + 1, false};
    return Slot{row, isAfter};
}

QRect FlowLayout::slotMark(const Slot& slot) const {
    const QRect beside = cell(slot.row);
    const bool isRight = slot.isAfter != m_metrics.isRightToLeft;
    const int middle = isRight ? beside.right() + 1 + gap / 2 : beside.left() - gap / 2;
    return {middle - 1, beside.top(), 2, m_side};
}

} // namespace Grid
