// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/CaptionDelegate.h>
#include <Roamly/Window/Grid/CellPainter.h>
#include <Roamly/Window/Grid/DropZone.h>
#include <Roamly/Window/Grid/EdgeScroll.h>
#include <Roamly/Window/Grid/GridPainter.h>
#include <Roamly/Window/Grid/HeaderPainter.h>
#include <Roamly/Window/Grid/PhotoDrag.h>
#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Grid/SpokenEvents.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

namespace Grid {

using Foundation::Uuid;

PhotoGridView::PhotoGridView(PhotoListModel& model, ThumbnailFeed& feed, QWidget* parent)
    : QListView(parent)
    , m_photos(&model)
    , m_feed(&feed)
    , m_pictures(feed)
    , m_edgeScroll(new EdgeScroll{*this})
    , m_dropZone(new DropZone{*this, *m_edgeScroll}) {
    setAccessibleName(QStringLiteral("Photos"));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabKeyNavigation(false);
    // Photos come into view by the keyboard alone: one that moved under the pointer would be missed by the
    // second click.
    setAutoScroll(false);
    setMouseTracking(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setContextMenuPolicy(Qt::DefaultContextMenu);
    setItemDelegate(new CaptionDelegate{this});
    setModel(&model);
    connect(&model, &PhotoListModel::sectionsChanged, this, &PhotoGridView::relayout);
    m_choice.emplace(model, *selectionModel());
    connect(&model, &PhotoListModel::photosAboutToBeRemoved, this,
            [this](const std::vector<std::size_t>& rows) { m_choice->makeCurrentBeside(rows); });
    connect(&feed, &ThumbnailFeed::ready, this, [this](const Uuid& photo) {
        m_pictures.forget(photo);
        if (const std::optional<int> row = m_photos->rowOf(photo))
            viewport()->update(visualRect(m_photos->index(*row)));
    });
    connect(m_edgeScroll, &EdgeScroll::scrolled, this, [this] { m_pointer.followScroll(); });
    connect(m_dropZone, &DropZone::changed, viewport(), qOverload<>(&QWidget::update));
    connect(m_dropZone, &DropZone::urlsDropped, this, &PhotoGridView::urlsDropped);
    connect(m_dropZone, &DropZone::photosDropped, this,
            [this](const std::vector<Uuid>& photos, const FlowLayout::Slot& slot) {
                Q_EMIT moveRequested(photos, m_photos->id(slot.row), slot.isAfter);
            });
}

const FlowLayout& PhotoGridView::flowLayout() const {
    if (m_isLayoutDirty) {
        m_layout = FlowLayout{m_photos->sections(),
                              {.width = viewport()->width(),
                               .tileSide = m_tileSide,
                               .captionHeight = fontMetrics().height() + 10,
                               .headerHeight = HeaderPainter::height(font()),
                               .isRightToLeft = isRightToLeft()}};
        m_isLayoutDirty = false;
    }
    return m_layout;
}

void PhotoGridView::relayout() {
    keepInSight();
    m_isLayoutDirty = true;
    scheduleDelayedItemsLayout();
}

void PhotoGridView::keepInSight() {
    if (m_kept || m_isLayoutDirty || verticalOffset() == 0)
        return;
    const auto rows = m_layout.rowsIn(
        {0, verticalOffset() + HeaderPainter::height(font()), viewport()->width(), viewport()->height()});
    if (rows.empty() || rows.front().first >= m_photos->rowCount())
        return;
    const int row = rows.front().first;
    m_kept = {m_photos->id(row), m_layout.cell(row).top() - verticalOffset()};
}

void PhotoGridView::doItemsLayout() {
    m_isLayoutDirty = true;
    QAbstractItemView::doItemsLayout();
}

void PhotoGridView::updateGeometries() {
    QScrollBar* bar = verticalScrollBar();
    bar->setSingleStep(std::max(1, flowLayout().tileSide() / 3));
    bar->setPageStep(viewport()->height());
    bar->setRange(0, std::max(0, flowLayout().contentHeight() - viewport()->height()));
    if (m_kept) {
        if (const std::optional<int> row = m_photos->rowOf(m_kept->first))
            bar->setValue(flowLayout().cell(*row).top() - m_kept->second);
        m_kept.reset();
    }
    QAbstractItemView::updateGeometries();
}

void PhotoGridView::setTileSide(int side) {
    const int wanted = std::clamp(side, smallestTile, largestTile);
    if (wanted == m_tileSide)
        return;
    relayout();
    m_tileSide = wanted;
    Q_EMIT tileSideChanged(wanted);
}

void PhotoGridView::resizeEvent(QResizeEvent* event) {
    keepInSight();
    m_isLayoutDirty = true;
    QAbstractItemView::resizeEvent(event);
}

void PhotoGridView::changeEvent(QEvent* event) {
    const bool isLook = event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange;
    const bool isMeasure =
        event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange;
    if (isLook)
        m_pictures.clear();
    if (isMeasure)
        relayout();
    QAbstractItemView::changeEvent(event);
}

int PhotoGridView::verticalOffset() const {
    return verticalScrollBar()->value();
}

QPoint PhotoGridView::toContent(const QPoint& point) const {
    return point + QPoint{0, verticalOffset()};
}

QRect PhotoGridView::visualRect(const QModelIndex& index) const {
    return index.isValid() ? flowLayout().cell(index.row()).translated(0, -verticalOffset()) : QRect{};
}

QModelIndex PhotoGridView::indexAt(const QPoint& point) const {
    if (const auto header = flowLayout().stickyHeader(verticalOffset());
        header && header->area.contains(point))
        return {};
    const std::optional<int> row = flowLayout().rowAt(toContent(point));
    return row ? m_photos->index(*row) : QModelIndex{};
}

PhotoGridView::Hit PhotoGridView::hit(const QPoint& point) const {
    Hit result;
    const QPoint inContent = toContent(point);
    if (const auto header = flowLayout().stickyHeader(verticalOffset());
        header && header->area.contains(point)) {
        result.section = header->section;
        return result;
    }
    if (const auto section = flowLayout().sectionAt(inContent.y());
        section && flowLayout().header(*section).contains(inContent)) {
        result.section = *section;
        return result;
    }
    if (const std::optional<int> row = flowLayout().rowAt(inContent); row && *row < m_photos->rowCount()) {
        const std::optional<CellAreas::Part> part = areasOf(*row).at(point);
        if (part) {
            result.row = *row;
            result.part = part;
        }
    }
    return result;
}

CellAreas PhotoGridView::areasOf(int row) const {
    return cellAreas(visualRect(m_photos->index(row)), m_photos->photo(row), m_photos->groupSize(row), font(),
                     isRightToLeft());
}

void PhotoGridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid())
        return;
    executeDelayedItemsLayout();
    const QRect cell = flowLayout().cell(index.row());
    const int header = HeaderPainter::height(font());
    const int height = viewport()->height();
    const int lowest = cell.top() - header - CellAreas::ringReach;
    const int highest = cell.bottom() + 1 + FlowLayout::gap - height;
    QScrollBar* bar = verticalScrollBar();
    switch (hint) {
    case PositionAtTop:
        bar->setValue(lowest);
        break;
    case PositionAtBottom:
        bar->setValue(highest);
        break;
    case PositionAtCenter:
        bar->setValue(cell.center().y() - (height + header) / 2);
        break;
    case EnsureVisible:
        bar->setValue(std::min(std::max(bar->value(), highest), lowest));
        break;
    }
}

void PhotoGridView::scrollContentsBy(int /*dx*/, int /*dy*/) {
    updateEditorGeometries();
    hover(viewport()->mapFromGlobal(QCursor::pos()));
    viewport()->update();
}

void PhotoGridView::rowsInserted(const QModelIndex& /*parent*/, int /*start*/, int /*end*/) {
    // `sectionsChanged` follows and lays out once for all that came.
}

void PhotoGridView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                                const QList<int>& roles) {
    // Past the list view's own layout, which is not in use.
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
}

void PhotoGridView::paintEvent(QPaintEvent* event) {
    executeDelayedItemsLayout();
    tellVisiblePhotos();
    QPainter painter{viewport()};
    paintGrid(painter, event->rect(),
              {.photos = *m_photos,
               .layout = flowLayout(),
               .choice = *m_choice,
               .pictures = m_pictures,
               .colours = Theme::colours(palette()),
               .font = font(),
               .viewport = viewport()->rect(),
               .ratio = devicePixelRatioF(),
               .offset = verticalOffset(),
               .focusedRow = hasFocus() ? currentIndex().row() : -1,
               .hoveredRow = m_hoveredRow,
               .editedRow = state() == EditingState ? currentIndex().row() : -1,
               .dropSlot = m_dropZone->slot(),
               .awaitsFiles = m_dropZone->awaitsFiles(),
               .frame = m_pointer.frame(),
               .isRightToLeft = isRightToLeft()});
}

void PhotoGridView::tellVisiblePhotos() {
    std::vector<Uuid> visible;
    for (const auto& [first, last] :
         flowLayout().rowsIn(viewport()->rect().translated(0, verticalOffset()))) {
        for (int row = first; row <= last && row < m_photos->rowCount(); ++row)
            visible.push_back(m_photos->id(row));
    }
    if (visible == m_toldVisible)
        return;
    m_toldVisible = std::move(visible);
    m_feed->wanted(m_toldVisible);
}

QModelIndex PhotoGridView::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/) {
    // Only an editor that is left by Tab asks: keys are followed by `KeyGestures`. Beyond the ends there is
    // nothing, and the editor stays closed.
    const int row = currentIndex().row();
    switch (action) {
    case MoveNext:
        return m_photos->index(row + 1);
    case MovePrevious:
        return m_photos->index(row - 1);
    case MoveHome:
        return m_photos->index(0);
    case MoveEnd:
        return m_photos->index(m_photos->rowCount() - 1);
    default:
        return currentIndex();
    }
}

void PhotoGridView::keyPressEvent(QKeyEvent* event) {
    event->setAccepted(m_keys.press(*event));
}

void PhotoGridView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() & Qt::ControlModifier) {
        setTileSide(m_tileSide + event->angleDelta().y() / 8);
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

void PhotoGridView::dragEnterEvent(QDragEnterEvent* event) {
    m_dropZone->enterOrMove(*event);
}

void PhotoGridView::dragMoveEvent(QDragMoveEvent* event) {
    m_dropZone->enterOrMove(*event);
}

void PhotoGridView::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    m_dropZone->leave();
}

void PhotoGridView::dropEvent(QDropEvent* event) {
    m_dropZone->drop(*event);
}

bool PhotoGridView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        m_pointer.showToolTip(static_cast<const QHelpEvent&>(*event));
        return true;
    }
    if (event->type() == QEvent::Leave)
        hover({-1, -1});
    return QListView::viewportEvent(event);
}

void PhotoGridView::hover(const QPoint& point) {
    const int row = viewport()->rect().contains(point) ? hit(point).row : -1;
    if (row == m_hoveredRow)
        return;
    for (const int changed : {m_hoveredRow, row})
        viewport()->update(visualRect(m_photos->index(changed)));
    m_hoveredRow = row;
}

void PhotoGridView::scrollNear(const QPoint& point) {
    m_edgeScroll->pointAt(point.y());
}

void PhotoGridView::stopScrolling() {
    m_edgeScroll->stop();
}

bool PhotoGridView::giveUp() {
    if (!m_pointer.frame() && !selectionModel()->hasSelection())
        return false;
    m_pointer.cancel();
    clearSelection();
    return true;
}

std::optional<Uuid> PhotoGridView::current() const {
    return currentIndex().isValid() ? std::optional{m_photos->id(currentIndex().row())} : std::nullopt;
}

void PhotoGridView::goTo(const Uuid& photo) {
    if (const std::optional<int> row = m_photos->rowOf(photo)) {
        m_choice->choose(*row, Qt::NoModifier);
        scrollTo(m_photos->index(*row));
    }
}

void PhotoGridView::chooseCurrentSection() {
    if (!currentIndex().isValid())
        return;
    const int row = currentIndex().row();
    const auto [first, end] = flowLayout().rowsOf(flowLayout().sectionOf(row));
    m_choice->chooseRange(first, end - 1, Qt::NoModifier);
}

void PhotoGridView::selectAll() {
    m_choice->chooseAll();
}

void PhotoGridView::editCurrentCaption() {
    if (currentIndex().isValid())
        editCaption(currentIndex().row());
}

void PhotoGridView::editCaption(int row) {
    edit(m_photos->index(row), EditKeyPressed, nullptr);
}

void PhotoGridView::finishEditing() {
    // Leaving it commits it.
    if (state() == EditingState)
        setFocus();
}

bool PhotoGridView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    if (trigger == EditKeyPressed || trigger == AllEditTriggers)
        scrollTo(index);
    const bool begins = QListView::edit(index, trigger, event);
    viewport()->update(visualRect(index));
    return begins;
}

void PhotoGridView::drag(int row) {
    const std::vector<Uuid> photos = chosen();
    if (photos.empty())
        return;
    const Theme::Colours colours = Theme::colours(palette());
    const int side = flowLayout().tileSide();
    const QPixmap tile = m_pictures.picture(m_photos->photo(row), side, devicePixelRatioF(), colours.tile);
    PhotoDrag::run(*this, photos,
                   PhotoDrag::picture(tile, photos.size(), colours, font(), devicePixelRatioF()));
    m_dropZone->leave();
}

void PhotoGridView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    QItemSelection selection;
    for (const auto& [first, last] : flowLayout().rowsIn(rect.translated(0, verticalOffset())))
        selection.append({m_photos->index(first), m_photos->index(last)});
    selectionModel()->select(selection, command);
}

QRegion PhotoGridView::visualRegionForSelection(const QItemSelection& /*selection*/) const {
    return viewport()->rect();
}

void PhotoGridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QAbstractItemView::currentChanged(current, previous);
    viewport()->update();
    if (hasFocus())
        SpokenEvents::tellCurrent(*this, current);
}

void PhotoGridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QAbstractItemView::selectionChanged(selected, deselected);
    Q_EMIT chosenChanged();
    SpokenEvents::tellSelection(*this, selected, deselected);
}

} // namespace Grid
