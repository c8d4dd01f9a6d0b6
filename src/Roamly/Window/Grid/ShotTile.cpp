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
/// How strong a photo is shown that is not in the film.
constexpr double leftOutStrength = 0.35;
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
    painter.setOpacity(isIn ? 1.0 : leftOutStrength);
    QRect shown = m_photo.paint(painter, area, m_shot.photo);
    painter.setOpacity(1.0);
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
    const QRect second = first.translated(0, line);
    const auto write = [&](const QRect& where, Qt::Alignment side, const QString& text) {
        painter.drawText(where,
                         static_cast<int>(QStyle::visualAlignment(layoutDirection(), side)) |
                             Qt::TextSingleLine | Qt::AlignVCenter,
                         fontMetrics().elidedText(text, Qt::ElideRight, where.width()));
    };
    QFont strong{font()};
    strong.setWeight(QFont::DemiBold);
    painter.setPen(colours.text);
    painter.setFont(m_shot.isBest ? strong : font());
    const QString key = m_number <= lastKey ? QStringLiteral("%1   ").arg(m_number) : QString{};
    write(first, Qt::AlignLeft, key + m_shot.place);
    painter.setFont(font());
    painter.setPen(colours.quietText);
    write(second, Qt::AlignLeft,
          m_shot.quality.isEmpty() ? PhotoText::fileName(m_shot.photo) : m_shot.quality);
}

} // namespace Grid
