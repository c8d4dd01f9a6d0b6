// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/Badges.h>
#include <Roamly/Window/Grid/Loupe.h>
#include <Roamly/Window/Grid/PhotoText.h>
#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTextLayout>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

namespace Grid {

using Foundation::Uuid;
using ProjectModel::PhotoItem;

namespace {

constexpr int edge = 16;
constexpr int barHeight = 48;
constexpr int badgeSide = 20;
constexpr int badgeInset = 8;
/// A longer caption ends in "…": the photo is the hero.
constexpr int captionLines = 2;

} // namespace

Loupe::Loupe(const PhotoListModel& photos, ThumbnailFeed& feed, LargePhotos& large, QTimeZone zone,
             QWidget* parent)
    : QWidget(parent)
    , m_photos(&photos)
    , m_feed(&feed)
    , m_large(&large)
    , m_zone(std::move(zone))
    , m_photo(feed, &large)
    , m_back(new QPushButton{QStringLiteral("Back to Photos")})
    , m_compare(new QPushButton{Theme::icon(QStringLiteral("compare")), QStringLiteral("Compare Group")}) {
    setFocusPolicy(Qt::StrongFocus);
    m_back->setToolTip(QStringLiteral("Back to the photos (Esc)"));
    auto* bar = new QHBoxLayout;
    bar->addWidget(m_back);
    bar->addStretch();
    bar->addWidget(m_compare);
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(edge, 8, edge, 8);
    column->addLayout(bar);
    column->addStretch();

    connect(m_back, &QPushButton::clicked, this, &Loupe::left);
    connect(m_compare, &QPushButton::clicked, this, [this] {
        if (m_current)
            Q_EMIT groupRequested(*m_current);
    });
    connect(m_photos, &PhotoListModel::sectionsChanged, this, &Loupe::follow);
    connect(m_photos, &PhotoListModel::dataChanged, this, &Loupe::tell);
    const auto repaintIfShown = [this](const Uuid& photo) {
        if (photo == m_current)
            update();
    };
    connect(m_large, &LargePhotos::ready, this, repaintIfShown);
    connect(m_feed, &ThumbnailFeed::ready, this, repaintIfShown);
}

void Loupe::open(const Uuid& photo) {
    if (const std::optional<int> row = m_photos->rowOf(photo))
        goTo(*row);
}

QString Loupe::position() const {
    return QStringLiteral("%1 of %2").arg(m_row + 1).arg(m_photos->rowCount());
}

void Loupe::walk(int rows) {
    const int row = std::clamp(m_row + rows, 0, std::max(0, m_photos->rowCount() - 1));
    if (m_current && row != m_row)
        goTo(row);
}

void Loupe::goTo(int row) {
    m_row = row;
    const bool isOther = m_current != m_photos->id(row);
    m_current = m_photos->id(row);
    wish();
    tell();
    if (isOther)
        Q_EMIT walked(*m_current);
}

void Loupe::follow() {
    if (!m_current)
        return;
    if (const std::optional<int> row = m_photos->rowOf(*m_current))
        goTo(*row);
    else if (m_photos->rowCount() > 0)
        goTo(std::min(m_row, m_photos->rowCount() - 1));
    else if (isVisible())
        Q_EMIT left();
}

void Loupe::wish() {
    if (!isVisible() || !m_current)
        return;
    const int pixels = FittedPhoto::pixelsFor(photoArea().size(), devicePixelRatioF());
    std::vector<LargePhotos::Wish> wishes;
    std::vector<Uuid> photos;
    // The neighbours too, so that a walk meets photos that are there.
    for (const int row : {m_row, m_row + 1, m_row - 1}) {
        if (row < 0 || row >= m_photos->rowCount())
            continue;
        const PhotoItem& photo = m_photos->photo(row);
        wishes.push_back({photo.id, photo.source, pixels});
        photos.push_back(photo.id);
    }
    m_large->wish(std::move(wishes));
    m_feed->wanted(photos);
}

void Loupe::tell() {
    if (!m_current || m_row >= m_photos->rowCount())
        return;
    const PhotoItem& photo = m_photos->photo(m_row);
    const std::size_t groupSize = m_photos->groupSize(m_row);
    m_compare->setVisible(groupSize > 1);
    m_compare->setText(QStringLiteral("Compare %1 Shots").arg(groupSize));
    setAccessibleName(PhotoText::name(photo));
    setAccessibleDescription(position() + QStringLiteral(", ") +
                             PhotoText::description(photo, groupSize, m_zone));
    update();
}

QRect Loupe::captionArea() const {
    const int height = (captionLines + 1) * fontMetrics().lineSpacing() + 4;
    return {edge, QWidget::height() - height - edge, width() - 2 * edge, height};
}

QRect Loupe::photoArea() const {
    return {edge, barHeight, width() - 2 * edge, captionArea().top() - barHeight - 12};
}

QRect Loupe::badge(const QRect& shown) const {
    const int left = isRightToLeft() ? shown.right() + 1 - badgeInset - badgeSide : shown.left() + badgeInset;
    return {left, shown.top() + badgeInset, badgeSide, badgeSide};
}

void Loupe::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    const Theme::Colours colours = Theme::colours(palette());
    painter.fillRect(rect(), colours.background);
    if (!m_current || m_row >= m_photos->rowCount())
        return;
    const PhotoItem& photo = m_photos->photo(m_row);
    m_shown = m_photo.paint(painter, photoArea(), photo);
    if (m_shown.isEmpty()) {
        painter.setPen(colours.quietText);
        painter.drawText(photoArea(), Qt::AlignCenter,
                         photo.isMissing ? QStringLiteral("The photo’s file is missing")
                                         : QStringLiteral("Loading…"));
        m_shown = photoArea();
    }
    painter.setRenderHint(QPainter::Antialiasing);
    Badges::paintCheck(painter, badge(m_shown), photo.isSelected, colours.accent, colours.onAccent);
    paintTexts(painter, photo);
}

void Loupe::paintTexts(QPainter& painter, const PhotoItem& photo) {
    const Theme::Colours colours = Theme::colours(palette());
    const QRect area = captionArea();
    const int line = fontMetrics().lineSpacing();
    QRect left = area;
    if (photo.caption && !photo.caption->empty()) {
        painter.setPen(colours.text);
        QTextLayout text{QString::fromStdString(*photo.caption).simplified(), font()};
        text.beginLayout();
        for (int number = 1; number <= captionLines; ++number) {
            QTextLine piece = text.createLine();
            if (!piece.isValid())
                break;
            piece.setLineWidth(std::min(area.width(), 800));
            QString shown = text.text().mid(piece.textStart(), piece.textLength());
            if (number == captionLines)
                shown = fontMetrics().elidedText(text.text().mid(piece.textStart()), Qt::ElideRight,
                                                 std::min(area.width(), 800));
            painter.drawText(left, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, shown.trimmed());
            left.setTop(left.top() + line);
        }
        text.endLayout();
        left.setTop(left.top() + 4);
    }
    QStringList facts{position()};
    facts << (photo.isSelected ? QStringLiteral("in the film") : QStringLiteral("left out"));
    if (const QString place = PhotoText::place(photo); !place.isEmpty())
        facts << place;
    if (photo.captureDate)
        facts << PhotoText::moment(*photo.captureDate, m_zone);
    facts << PhotoText::fileName(photo);
    painter.setPen(colours.quietText);
    painter.drawText(
        left, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine,
        fontMetrics().elidedText(facts.join(QStringLiteral(" · ")), Qt::ElideRight, area.width()));
}

void Loupe::keyPressEvent(QKeyEvent* event) {
    const int forward = isRightToLeft() ? -1 : 1;
    if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return QWidget::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Left:
        return walk(-forward);
    case Qt::Key_Right:
        return walk(forward);
    case Qt::Key_Up:
    case Qt::Key_PageUp:
        return walk(-1);
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        return walk(1);
    case Qt::Key_Home:
        return walk(-m_row);
    case Qt::Key_End:
        return walk(m_photos->rowCount());
    case Qt::Key_Space:
        if (m_current)
            Q_EMIT decisionToggled({*m_current});
        return;
    case Qt::Key_Delete:
        if (m_current)
            Q_EMIT removalRequested({*m_current});
        return;
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Q_EMIT left();
    default:
        QWidget::keyPressEvent(event);
    }
}

void Loupe::mousePressEvent(QMouseEvent* event) {
    const bool isOnBadge = badge(m_shown).adjusted(-4, -4, 4, 4).contains(event->position().toPoint());
    if (event->button() == Qt::LeftButton && isOnBadge && m_current)
        Q_EMIT decisionToggled({*m_current});
}

void Loupe::mouseDoubleClickEvent(QMouseEvent* event) {
    const bool isOnBadge = badge(m_shown).adjusted(-4, -4, 4, 4).contains(event->position().toPoint());
    if (isOnBadge)
        return mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        Q_EMIT left();
}

void Loupe::wheelEvent(QWheelEvent* event) {
    constexpr int notch = 120;
    m_wheel += event->angleDelta().y();
    walk(-(m_wheel / notch));
    m_wheel %= notch;
    event->accept();
}

void Loupe::resizeEvent(QResizeEvent*) {
    wish();
}

void Loupe::showEvent(QShowEvent*) {
    wish();
}

void Loupe::hideEvent(QHideEvent*) {
    m_large->wish({});
}

} // namespace Grid
