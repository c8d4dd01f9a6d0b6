// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/Badges.h>
#include <Roamly/Window/Grid/CellPainter.h>
#include <Roamly/Window/Grid/TilePictures.h>

#include <QFontMetrics>
#include <QPainter>

namespace Grid {

using ProjectModel::PhotoItem;

namespace {

/// How strong a photo is shown that is not in the film.
constexpr double leftOutStrength = 0.35;

void paintRing(QPainter& painter, const QRect& tile, const QColor& colour, double width, double distance) {
    const double reach = distance + width / 2;
    painter.setPen(QPen{colour, width});
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF{tile}.adjusted(-reach, -reach, reach, reach),
                            TilePictures::cornerRadius + reach, TilePictures::cornerRadius + reach);
}

void paintTile(QPainter& painter, const QRect& tile, const CellContent& content,
               const Theme::Colours& colours, const QFont& font) {
    const bool isFaint = !content.photo.isSelected;
    if (content.picture.isNull() || isFaint) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.tile);
        painter.drawRoundedRect(tile, TilePictures::cornerRadius, TilePictures::cornerRadius);
    }
    if (content.picture.isNull()) {
        if (content.photo.isMissing) {
            painter.setPen(colours.quietText);
            painter.setFont(font);
            painter.drawText(tile, Qt::AlignCenter, QStringLiteral("Missing"));
        }
        return;
    }
    painter.setOpacity(isFaint ? leftOutStrength : 1.0);
    painter.drawPixmap(tile.topLeft(), content.picture);
    painter.setOpacity(1.0);
}

void paintCaption(QPainter& painter, const QRect& line, const CellContent& content,
                  const Theme::Colours& colours, const QFont& font, bool isRightToLeft) {
    const bool hasCaption = content.photo.caption && !content.photo.caption->empty();
    if (content.isEdited || (!hasCaption && !content.isHovered && !content.hasFocus))
        return;
    const QString text = hasCaption ? QString::fromStdString(*content.photo.caption).simplified()
                                    : QStringLiteral("Add a caption");
    const bool isQuiet = !hasCaption || !content.photo.isSelected;
    painter.setPen(isQuiet ? colours.quietText : colours.text);
    painter.setFont(font);
    const Qt::Alignment side = isRightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(line, static_cast<int>(side | Qt::AlignAbsolute) | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
}

} // namespace

CellAreas cellAreas(const QRect& cell, const PhotoItem& photo, std::size_t groupSize, const QFont& font,
                    bool isRightToLeft) {
    const bool isApproximate =
        photo.location && photo.location->provenance == ProjectModel::Provenance::inferred;
    return CellAreas::of(cell,
                         {.stackWidth = groupSize > 1 ? Badges::stackWidth(groupSize, font) : 0,
                          .isApproximate = isApproximate,
                          .isMissing = photo.isMissing},
                         isRightToLeft);
}

void paintCell(QPainter& painter, const QRect& cell, const CellContent& content,
               const Theme::Colours& colours, const QFont& font, bool isRightToLeft) {
    const CellAreas areas = cellAreas(cell, content.photo, content.groupSize, font, isRightToLeft);
    paintTile(painter, areas.tile, content, colours, font);
    if (content.isChosen)
        paintRing(painter, areas.tile, colours.accent, 2, 2);
    if (content.hasFocus)
        paintRing(painter, areas.tile, content.isChosen ? colours.text : colours.quietText, 1, 4.5);
    Badges::paintCheck(painter, areas.check, content.photo.isSelected, colours.accent, colours.onAccent);
    if (!areas.stack.isEmpty())
        Badges::paintStack(painter, areas.stack, content.groupSize, font);
    if (!areas.approximate.isEmpty())
        Badges::paintApproximate(painter, areas.approximate);
    if (!areas.missing.isEmpty())
        Badges::paintMissing(painter, areas.missing);
    paintCaption(painter, areas.caption, content, colours, font, isRightToLeft);
}

} // namespace Grid
