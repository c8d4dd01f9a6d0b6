// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/FlowLayout.h>
#include <Roamly/Window/Grid/HeaderPainter.h>

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

namespace Grid::HeaderPainter {

namespace {

/// One step larger than the interface's font.
QFont titleFont(const QFont& font) {
    QFont title{font};
    if (font.pointSizeF() > 0)
        title.setPointSizeF(font.pointSizeF() * 1.2);
    else
        title.setPixelSize(font.pixelSize() * 6 / 5);
    title.setWeight(QFont::DemiBold);
    return title;
}

} // namespace

int height(const QFont& font) {
    return (QFontMetrics{titleFont(font)}.height() + 24) / 8 * 8;
}

void paint(QPainter& painter, const QRect& area, const Section& section, const Theme::Colours& colours,
           const QFont& font, bool isRightToLeft) {
    painter.fillRect(area, colours.background);
    const QRect line = area.adjusted(FlowLayout::margin, 0, -FlowLayout::margin, 0);
    const QFontMetrics titleMetrics{titleFont(font)};
    const QFontMetrics metrics{font};
    const int detailsWidth = metrics.horizontalAdvance(section.details);
    const int room = std::max(0, line.width() - detailsWidth - 16);
    const QString title = titleMetrics.elidedText(section.title, Qt::ElideRight, room);
    const int titleWidth = titleMetrics.horizontalAdvance(title);
    // Both stand on one base line.
    const int base = area.top() + (area.height() + titleMetrics.ascent() - titleMetrics.descent()) / 2;

    painter.setFont(titleFont(font));
    painter.setPen(colours.text);
    painter.drawText(isRightToLeft ? line.right() + 1 - titleWidth : line.left(), base, title);
    painter.setFont(font);
    painter.setPen(colours.quietText);
    painter.drawText(isRightToLeft ? line.right() + 1 - titleWidth - 12 - detailsWidth
                                   : line.left() + titleWidth + 12,
                     base, section.details);
}

} // namespace Grid::HeaderPainter
