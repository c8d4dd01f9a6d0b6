// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/Badges.h>
#include <Roamly/Window/Grid/PhotoText.h>
#include <Roamly/Window/Grid/ShotTile.h>
#include <Roamly/Window/Grid/TilePictures.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QPainter>
#include <QStringList>
#include <QStyle>

namespace Grid {

namespace {

constexpr int inset = 8;
constexpr int badgeSide = 20;
/// Of the column in which the keys stand.
constexpr int keyWidth = 20;
/// Only so many shots have a key of their own.
constexpr int lastKey = 9;

} // namespace

ShotTile::ShotTile(const Shot& shot, int number, ThumbnailFeed& feed, const LargePhotos& large,
                   QWidget* parent)
    : QAbstractButton(parent)
    , m_shot(shot)
    , m_number(number)
    , m_photo(feed, &large) {
    setFocusPolicy(Qt::StrongFocus);
    setCheckable(true);
    setMinimumSize(160, 160);
    tell();
}

void ShotTile::setShot(const Shot& shot) {
    m_shot = shot;
    tell();
}

void ShotTile::tell() {
    setChecked(m_shot.photo.isSelected);
    QStringList facts{m_shot.place};
    if (!m_shot.quality.isEmpty())
        facts << m_shot.quality;
    facts << (m_shot.photo.isSelected ? QStringLiteral("in the film") : QStringLiteral("left out"));
    setAccessibleName(QStringLiteral("%1. %2").arg(m_number).arg(PhotoText::name(m_shot.photo)));
    setAccessibleDescription(facts.join(QStringLiteral(", ")));
    setToolTip(PhotoText::fileName(m_shot.photo));
    update();
}

QRect ShotTile::photoArea() const {
    const int texts = 2 * fontMetrics().lineSpacing() + inset;
    return rect().adjusted(inset, inset, -inset, -inset - texts);
}

void ShotTile::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme::Colours colours = Theme::colours(palette());
    const bool isIn = m_shot.photo.isSelected;

    painter.setPen(hasFocus() ? QPen{colours.accent, 2} : QPen{Qt::NoPen});
    painter.setBrush(colours.tile);
    painter.drawRoundedRect(QRectF{rect()}.adjusted(1, 1, -1, -1), TilePictures::cornerRadius,
                            TilePictures::cornerRadius);
    const QRect area = photoArea();
    // Also what is left out is shown in full: it is to be compared.
    QRect shown = m_photo.paint(painter, area, m_shot.photo);
    if (shown.isEmpty()) {
        painter.setPen(colours.quietText);
        painter.drawText(area, Qt::AlignCenter,
                         m_shot.photo.isMissing ? QStringLiteral("Missing") : QStringLiteral("Loading…"));
        shown = area;
    }
    const int badgeLeft = isRightToLeft() ? shown.right() + 1 - inset - badgeSide : shown.left() + inset;
    Badges::paintCheck(painter, {badgeLeft, shown.top() + inset, badgeSide, badgeSide}, isIn, colours.accent,
                       colours.onAccent);

    const int line = fontMetrics().lineSpacing();
    const QRect first{area.left(), area.bottom() + 1 + inset, area.width(), line};
    const auto write = [&](const QRect& where, Qt::Alignment side, const QString& text) {
        painter.drawText(where,
                         static_cast<int>(QStyle::visualAlignment(layoutDirection(), side)) |
                             Qt::TextSingleLine | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(text, Qt::ElideRight, where.width()));
    };
    QFont strong{font()};
    strong.setWeight(QFont::DemiBold);
    const bool hasKey = m_number <= lastKey;
    painter.setPen(colours.quietText);
    if (hasKey)
        write(first, Qt::AlignLeft, QString::number(m_number));
    const QRect beside = first.adjusted(hasKey && !isRightToLeft() ? keyWidth : 0, 0,
                                        hasKey && isRightToLeft() ? -keyWidth : 0, 0);
    const QString state = isIn ? QStringLiteral("In the film") : QStringLiteral("Left out");
    write(beside.translated(0, line), Qt::AlignLeft,
          m_shot.quality.isEmpty() ? state : state + QStringLiteral(" · ") + m_shot.quality);
    painter.setPen(colours.text);
    painter.setFont(m_shot.isBest ? strong : font());
    write(beside, Qt::AlignLeft, m_shot.place);
}

} // namespace Grid
