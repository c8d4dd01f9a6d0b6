// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoMenu.h>
#include <Roamly/Window/Grid/PhotoText.h>
#include <Roamly/Window/Grid/ReviewPane.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <set>
#include <utility>

namespace Grid {

using Foundation::Uuid;

namespace {

std::set<Uuid> setOf(const std::vector<Uuid>& photos) {
    return {photos.begin(), photos.end()};
}

/// What is shown where a filter leaves no photo.
QWidget* makeNote(QWidget* parent, QPushButton* button) {
    auto* note = new QWidget{parent};
    auto* text = new QLabel{QStringLiteral("No photos match."), note};
    auto* column = new QVBoxLayout{note};
    column->addStretch();
    column->addWidget(text, 0, Qt::AlignHCenter);
    column->addSpacing(8);
    column->addWidget(button, 0, Qt::AlignHCenter);
    column->addStretch();
    return note;
}

} // namespace

ReviewPane::ReviewPane(Document::ProjectDocument& document, ThumbnailFeed& feed, QTimeZone zone,
                       QWidget* parent)
    : QWidget(parent)
    , m_document(&document)
    , m_review(document)
    , m_photos(std::move(zone))
    , m_filterBar(new FilterBar)
    , m_zoom(new ZoomControl{PhotoGridView::smallestTile, PhotoGridView::largestTile})
    , m_grid(new PhotoGridView{m_photos, feed})
    , m_shown(new QStackedWidget)
    , m_beside(new QSplitter{Qt::Horizontal})
    , m_pages(new QStackedWidget)
    , m_gridPage(new QWidget) {
    auto* showAll = new QPushButton{QStringLiteral("Show All Photos")};
    m_noMatches = makeNote(m_shown, showAll);
    m_shown->addWidget(m_grid);
    m_shown->addWidget(m_noMatches);

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(FlowLayout::margin, 8, FlowLayout::margin, 8);
    bar->addWidget(m_filterBar, 1);
    bar->addStretch(1);
    bar->addWidget(m_zoom);
    auto* column = new QVBoxLayout{m_gridPage};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(bar);
    column->addWidget(m_shown, 1);

    m_beside->setChildrenCollapsible(false);
    m_beside->addWidget(m_gridPage);
    m_beside->setStretchFactor(0, 1);
    m_pages->addWidget(m_beside);
    auto* whole = new QVBoxLayout{this};
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_pages);

    m_zoom->setValue(m_grid->tileSide());
    connect(m_zoom, &ZoomControl::valueChanged, m_grid, &PhotoGridView::setTileSide);
    connect(m_grid, &PhotoGridView::tileSideChanged, m_zoom, &ZoomControl::setValue);
    connect(m_filterBar, &FilterBar::filterChanged, this, &ReviewPane::refresh);
    connect(m_filterBar, &FilterBar::left, m_grid, [this] { m_grid->setFocus(); });
    connect(showAll, &QPushButton::clicked, this, [this] { m_filterBar->setFilter({}); });
    forwardWishes();
    setFocusProxy(m_grid);
    refresh();
}

void ReviewPane::forwardWishes() {
    connect(&m_photos, &PhotoListModel::captionEdited, this,
            [this](const Uuid& photo, const QString& caption) {
                const auto store = [this, photo, text = caption.toStdString()] {
                    m_review.setCaption(text, photo);
                };
                // A photo that leaves the grid closes its editor, and the document is not to be changed by
                // those who hear of its change.
                if (m_isRefreshing)
                    QMetaObject::invokeMethod(this, store, Qt::QueuedConnection);
                else
                    store();
            });
    connect(m_grid, &PhotoGridView::decisionToggled, this,
            [this](const std::vector<Uuid>& photos) { m_review.toggleSelections(setOf(photos)); });
    connect(m_grid, &PhotoGridView::removalRequested, this,
            [this](const std::vector<Uuid>& photos) { m_review.removePhotos(setOf(photos)); });
    connect(m_grid, &PhotoGridView::moveRequested, this,
            [this](const std::vector<Uuid>& photos, const Uuid& neighbour, bool isAfter) {
                m_review.movePhotos(setOf(photos), neighbour, isAfter);
            });
    connect(m_grid, &PhotoGridView::menuRequested, this, &ReviewPane::showMenu);
    connect(m_grid, &PhotoGridView::chosenChanged, this, &ReviewPane::chosenChanged);
    connect(m_grid, &PhotoGridView::loupeRequested, this, &ReviewPane::loupeRequested);
    connect(m_grid, &PhotoGridView::groupRequested, this, &ReviewPane::groupRequested);
    connect(m_grid, &PhotoGridView::urlsDropped, this, &ReviewPane::urlsDropped);
}

void ReviewPane::refresh() {
    m_isRefreshing = true;
    m_photos.show(m_document->project(), m_filterBar->filter());
    m_isRefreshing = false;
    showWhatMatches();
}

void ReviewPane::showWhatMatches() {
    QWidget* const wanted = m_photos.hidesAll() ? m_noMatches : static_cast<QWidget*>(m_grid);
    if (m_shown->currentWidget() != wanted)
        m_shown->setCurrentWidget(wanted);
}

void ReviewPane::showMenu(const QPoint& globalPosition) {
    const std::vector<Uuid> chosen = m_grid->choice().chosenOrCurrent();
    if (chosen.empty())
        return;
    PhotoMenuState state{
        .photos = chosen.size(), .areAllInTheFilm = true, .whyNoCaption = m_whyNoCaption, .whyNoFile = {}};
    for (const Uuid& id : chosen) {
        const int row = m_photos.rowOf(id).value();
        const ProjectModel::PhotoItem& photo = m_photos.photo(row);
        state.areAllInTheFilm &= photo.isSelected;
        state.isInGroup |= m_photos.groupSize(row) > 1;
        if (const QString reason = PhotoText::whyNoFile(photo); !reason.isEmpty())
            state.whyNoFile = reason;
    }
    const Uuid first = chosen.front();
    auto* menu = new PhotoMenu{state, this};
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu, &PhotoMenu::openRequested, this, [this, first] { Q_EMIT loupeRequested(first); });
    connect(menu, &PhotoMenu::compareRequested, this, [this, first] { Q_EMIT groupRequested(first); });
    connect(menu, &PhotoMenu::decisionRequested, this,
            [this, chosen](bool isInTheFilm) { m_review.setSelection(isInTheFilm, setOf(chosen)); });
    connect(menu, &PhotoMenu::captionEditRequested, m_grid, &PhotoGridView::editCurrentCaption);
    connect(menu, &PhotoMenu::captionRegenerationRequested, this,
            [this, first] { Q_EMIT captionRegenerationRequested(first); });
    connect(menu, &PhotoMenu::placeRequested, this, [this, chosen] { Q_EMIT placeRequested(chosen); });
    connect(menu, &PhotoMenu::chapterRequested, m_grid, &PhotoGridView::chooseCurrentSection);
    connect(menu, &PhotoMenu::fileRequested, this, [this, first] { Q_EMIT fileRequested(first); });
    connect(menu, &PhotoMenu::removalRequested, this,
            [this, chosen] { m_review.removePhotos(setOf(chosen)); });
    menu->popup(globalPosition);
}

void ReviewPane::setDetails(QWidget* details) {
    delete m_details;
    m_details = details;
    m_beside->addWidget(details);
    m_beside->setStretchFactor(1, 0);
    details->hide();
}

void ReviewPane::showDetails(bool isShown) {
    if (m_details)
        m_details->setVisible(isShown);
}

void ReviewPane::setLoupe(QWidget* loupe) {
    delete m_loupe;
    m_loupe = loupe;
    m_pages->addWidget(loupe);
}

bool ReviewPane::isLoupeShown() const {
    return m_loupe && m_pages->currentWidget() == m_loupe;
}

void ReviewPane::showLoupe(bool isShown) {
    if (!m_loupe)
        return;
    m_pages->setCurrentWidget(isShown ? m_loupe : m_beside);
    (isShown ? m_loupe : static_cast<QWidget*>(m_grid))->setFocus();
}

} // namespace Grid
