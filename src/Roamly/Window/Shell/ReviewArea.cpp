// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/ReviewArea.h>

#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace Shell {

namespace {

/// Pixels by which a step makes the photos larger or smaller.
constexpr int sizeStep = 32;

} // namespace

ReviewArea::ReviewArea(Document::ProjectDocument& document,
                       std::shared_ptr<Platform::ThumbnailProvider> thumbnails, Grid::LargePhotos::Load photo,
                       QWidget* parent)
    : QWidget(parent)
    , m_thumbnails(std::move(thumbnails))
    , m_pane(new Grid::ReviewPane(document, m_thumbnails))
    , m_closeUp(*m_pane, document, m_thumbnails, std::move(photo))
    , m_subscription(document.addListener([this](const Document::ProjectDifference&) {
        m_pane->refresh();
        m_closeUp.refresh();
    })) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pane);
    setFocusProxy(&m_pane->grid());
    connect(m_pane, &Grid::ReviewPane::chosenChanged, this, &ReviewArea::markedChanged);
    connect(m_pane, &Grid::ReviewPane::captionRegenerationRequested, this, &ReviewArea::captionWanted);
    connect(m_pane, &Grid::ReviewPane::fileRequested, this, &ReviewArea::fileWanted);
    connect(m_pane, &Grid::ReviewPane::urlsDropped, this, &ReviewArea::dropped);
    connect(m_pane, &Grid::ReviewPane::placeRequested, this,
            [this](const std::vector<Foundation::Uuid>& photos) {
                Q_EMIT placeWanted({photos.begin(), photos.end()});
            });
}

ReviewArea::~ReviewArea() {
    // Before the thumbnails that it shows.
    delete m_pane;
}

std::set<Foundation::Uuid> ReviewArea::marked() const {
    const std::vector<Foundation::Uuid> chosen = m_pane->grid().chosen();
    return {chosen.begin(), chosen.end()};
}

void ReviewArea::selectAll() {
    m_pane->grid().selectAll();
}

void ReviewArea::selectNone() {
    m_pane->grid().clearSelection();
}

void ReviewArea::find() {
    m_pane->filterBar().beginSearch();
}

void ReviewArea::editCaption() {
    while (m_closeUp.leave()) {
    }
    m_pane->grid().editCurrentCaption();
}

void ReviewArea::finishEditing() {
    m_pane->grid().finishEditing();
    m_closeUp.finishEditing();
}

void ReviewArea::openPhoto() {
    const std::vector<Foundation::Uuid> chosen = m_pane->grid().chosen();
    if (chosen.size() == 1)
        m_closeUp.openPhoto(chosen.front());
}

void ReviewArea::compareGroup() {
    const std::vector<Foundation::Uuid> chosen = m_pane->grid().chosen();
    if (chosen.size() == 1)
        m_closeUp.compareGroup(chosen.front());
}

bool ReviewArea::isMarkedInGroup() const {
    const std::vector<Foundation::Uuid> chosen = m_pane->grid().chosen();
    if (chosen.size() != 1)
        return false;
    const std::optional<int> row = m_pane->photos().rowOf(chosen.front());
    return row && m_pane->photos().groupSize(*row) > 1;
}

void ReviewArea::showDetails(bool isShown) {
    m_closeUp.showDetails(isShown);
}

void ReviewArea::resizePhotos(int steps) {
    Grid::PhotoGridView& grid = m_pane->grid();
    grid.setTileSide(std::clamp(grid.tileSide() + steps * sizeStep, Grid::PhotoGridView::smallestTile,
                                Grid::PhotoGridView::largestTile));
}

void ReviewArea::setWhyNoCaption(const QString& reason) {
    m_pane->setWhyNoCaption(reason);
}

QWidget* ReviewArea::zoom() {
    return &m_pane->zoomControl();
}

} // namespace Shell
