// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/Comparison.h>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace Grid {

using Foundation::Uuid;

namespace {

constexpr int edge = 16;
constexpr int gap = 12;
/// More of them scroll.
constexpr int rowsOnScreen = 2;

} // namespace

Comparison::Comparison(ThumbnailFeed& feed, LargePhotos& large, QWidget* parent)
    : QWidget(parent)
    , m_feed(&feed)
    , m_large(&large)
    , m_title(new QLabel)
    , m_scroll(new QScrollArea)
    , m_wall(new QWidget)
    , m_grid(new QGridLayout{m_wall}) {
    setAccessibleName(QStringLiteral("Compare Group"));
    setFocusPolicy(Qt::StrongFocus);
    auto* back = new QPushButton{QStringLiteral("Back to Photos")};
    back->setToolTip(QStringLiteral("Back to the photos (Esc)"));
    auto* hint = new QLabel{QStringLiteral("Press 1 to 9 to keep a shot or leave it out")};
    hint->setForegroundRole(QPalette::PlaceholderText);
    QFont strong{m_title->font()};
    strong.setWeight(QFont::DemiBold);
    m_title->setFont(strong);
    auto* bar = new QHBoxLayout;
    bar->setSpacing(edge);
    bar->addWidget(back);
    bar->addWidget(m_title);
    bar->addStretch();
    bar->addWidget(hint);

    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(gap);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidget(m_wall);
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(edge, 8, edge, edge);
    column->setSpacing(8);
    column->addLayout(bar);
    column->addWidget(m_scroll, 1);

    connect(back, &QPushButton::clicked, this, &Comparison::left);
    const auto repaint = [this](const Uuid& photo) {
        for (ShotTile* tile : m_tiles) {
            if (tile->shot().photo.id == photo)
                tile->update();
        }
    };
    connect(m_large, &LargePhotos::ready, this, repaint);
    connect(m_feed, &ThumbnailFeed::ready, this, repaint);
}

int Comparison::columnsFor(std::size_t shots) {
    return shots <= 1 ? 1 : shots == 2 || shots == 4 ? 2 : 3;
}

void Comparison::setShots(const std::vector<Shot>& shots) {
    const bool areTheSame = std::ranges::equal(
        m_tiles, shots, {}, [](const ShotTile* tile) { return tile->shot().photo.id; },
        [](const Shot& shot) { return shot.photo.id; });
    if (areTheSame) {
        for (std::size_t number = 0; number < shots.size(); ++number)
            m_tiles[number]->setShot(shots[number]);
        return;
    }
    rebuild(shots);
}

void Comparison::rebuild(const std::vector<Shot>& shots) {
    for (ShotTile* tile : m_tiles) {
        tile->hide();
        tile->deleteLater();
    }
    m_tiles.clear();
    m_title->setText(QStringLiteral("%1 similar shots").arg(shots.size()));
    const int columns = columnsFor(shots.size());
    for (int number = 0; const Shot& shot : shots) {
        auto* tile = new ShotTile{shot, number + 1, *m_feed, *m_large, m_wall};
        connect(tile, &QAbstractButton::clicked, this,
                [this, tile] { Q_EMIT decisionToggled({tile->shot().photo.id}); });
        m_grid->addWidget(tile, number / columns, number % columns);
        m_tiles.push_back(tile);
        ++number;
    }
    // Columns and rows of a larger group before take no room.
    for (int index = 0; index < 3; ++index)
        m_grid->setColumnStretch(index, index < columns ? 1 : 0);
    if (!m_tiles.empty())
        setFocusProxy(m_tiles.front());
    arrange();
}

void Comparison::arrange() {
    if (!isVisible() || m_tiles.empty())
        return;
    const int columns = columnsFor(m_tiles.size());
    const int lines = (static_cast<int>(m_tiles.size()) + columns - 1) / columns;
    const int shown = std::min(lines, rowsOnScreen);
    const QSize room = m_scroll->viewport()->size();
    const int height = std::max(160, (room.height() - (shown - 1) * gap) / shown);
    for (ShotTile* tile : m_tiles)
        tile->setFixedHeight(height);
    const QSize tile{(room.width() - (columns - 1) * gap) / columns, height};
    std::vector<LargePhotos::Wish> wishes;
    std::vector<Uuid> photos;
    for (const ShotTile* each : m_tiles) {
        const ProjectModel::PhotoItem& photo = each->shot().photo;
        wishes.push_back({photo.id, photo.source, FittedPhoto::pixelsFor(tile, devicePixelRatioF())});
        photos.push_back(photo.id);
    }
    m_large->wish(std::move(wishes));
    m_feed->wanted(photos);
}

void Comparison::keyPressEvent(QKeyEvent* event) {
    if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return QWidget::keyPressEvent(event);
    const int key = event->key();
    if (key >= Qt::Key_1 && key <= Qt::Key_9) {
        const auto number = static_cast<std::size_t>(key - Qt::Key_1);
        if (number < m_tiles.size())
            Q_EMIT decisionToggled({m_tiles[number]->shot().photo.id});
        return;
    }
    if (key == Qt::Key_Escape)
        return Q_EMIT left();
    QWidget::keyPressEvent(event);
}

void Comparison::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void Comparison::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // The rows' heights follow from the room, which is known once the layout ran.
    QMetaObject::invokeMethod(this, &Comparison::arrange, Qt::QueuedConnection);
}

void Comparison::hideEvent(QHideEvent*) {
    m_large->wish({});
}

} // namespace Grid
