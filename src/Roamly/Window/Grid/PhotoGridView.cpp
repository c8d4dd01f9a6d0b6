#include <Roamly/Window/Grid/CaptionDelegate.h>
#include <Roamly/Window/Grid/CellPainter.h>
#include <Roamly/Window/Grid/DropZone.h>
#include <Roamly/Window/Grid/EdgeScroll.h>
#include <Roamly/Window/Grid/HeaderPainter.h>
#include <Roamly/Window/Grid/PhotoDrag.h>
#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHelpEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <map>

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

// --- Layout

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
    if (const auto header = stickyHeader(); header && header->area.contains(point))
        return {};
    const std::optional<int> row = flowLayout().rowAt(toContent(point));
    return row ? m_photos->index(*row) : QModelIndex{};
}

PhotoGridView::Hit PhotoGridView::hit(const QPoint& point) const {
    Hit result;
    const QPoint inContent = toContent(point);
    if (const auto header = stickyHeader(); header && header->area.contains(point)) {
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

std::optional<PhotoGridView::StickyHeader> PhotoGridView::stickyHeader() const {
    const FlowLayout& layout = flowLayout();
    const int top = verticalOffset();
    const std::optional<int> section = layout.sectionAt(top);
    if (!section)
        return std::nullopt;
    QRect area = layout.header(*section);
    area.moveTop(0);
    // The next one pushes it away.
    if (*section + 1 < layout.sectionCount())
        area.moveTop(std::min(0, layout.header(*section + 1).top() - top - area.height()));
    return StickyHeader{*section, area};
}

void PhotoGridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid())
        return;
    executeDelayedItemsLayout();
    const QRect cell = flowLayout().cell(index.row());
    const int header = HeaderPainter::height(font());
    const int height = viewport()->height();
    const int lowest = cell.top() - header;
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

// --- What the model tells

void PhotoGridView::rowsInserted(const QModelIndex& /*parent*/, int /*start*/, int /*end*/) {
    // `sectionsChanged` follows and lays out once for all that came.
}

void PhotoGridView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                                const QList<int>& roles) {
    // Past the list view's own layout, which is not in use.
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
}

// --- Painting

void PhotoGridView::paintEvent(QPaintEvent* event) {
    executeDelayedItemsLayout();
    tellVisiblePhotos();
    const Theme::Colours colours = Theme::colours(palette());
    QPainter painter{viewport()};
    painter.setFont(font());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(event->rect(), colours.background);
    // Rings reach beyond their cells.
    const int reach = CellAreas::ringReach;
    paintCells(painter, event->rect().adjusted(-reach, -reach, reach, reach));
    paintHeaders(painter, event->rect());
    paintOverlays(painter);
}

void PhotoGridView::paintOverlays(QPainter& painter) {
    const QColor accent = Theme::colours(palette()).accent;
    if (const auto& slot = m_dropZone->slot()) {
        const QRect mark = flowLayout().slotMark(*slot).translated(0, -verticalOffset());
        painter.setPen(Qt::NoPen);
        painter.setBrush(accent);
        painter.drawRoundedRect(mark.adjusted(-1, 0, 1, 0), 2, 2);
    }
    if (m_dropZone->awaitsFiles()) {
        painter.setPen(QPen{accent, 2});
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
    }
    if (const std::optional<QRect> frame = m_pointer.frame()) {
        QColor inside = accent;
        inside.setAlphaF(0.15F);
        painter.setPen(QPen{accent, 1});
        painter.setBrush(inside);
        painter.drawRect(QRectF{frame->translated(0, -verticalOffset())}.adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

void PhotoGridView::paintCells(QPainter& painter, const QRect& area) {
    const Theme::Colours colours = Theme::colours(palette());
    const int focused = hasFocus() ? currentIndex().row() : -1;
    const int edited = state() == EditingState ? currentIndex().row() : -1;
    for (const auto& [first, last] : flowLayout().rowsIn(area.translated(0, verticalOffset()))) {
        for (int row = first; row <= last && row < m_photos->rowCount(); ++row) {
            const QRect cell = flowLayout().cell(row).translated(0, -verticalOffset());
            const CellContent content{
                .photo = m_photos->photo(row),
                .groupSize = m_photos->groupSize(row),
                .picture =
                    m_pictures.picture(m_photos->photo(row), cell.width(), devicePixelRatioF(), colours.tile),
                .isChosen = m_choice->isChosen(row),
                .hasFocus = row == focused,
                .isHovered = row == m_hoveredRow,
                .isEdited = row == edited,
            };
            paintCell(painter, cell, content, colours, font(), isRightToLeft());
        }
    }
}

void PhotoGridView::paintHeaders(QPainter& painter, const QRect& area) {
    const Theme::Colours colours = Theme::colours(palette());
    const auto paint = [&](int section, const QRect& where) {
        if (where.intersects(area) && static_cast<std::size_t>(section) < m_photos->sections().size())
            HeaderPainter::paint(painter, where, m_photos->sections()[static_cast<std::size_t>(section)],
                                 colours, font(), isRightToLeft());
    };
    const std::optional<StickyHeader> sticky = stickyHeader();
    if (!sticky)
        return;
    for (int section = sticky->section + 1; section < flowLayout().sectionCount(); ++section) {
        const QRect where = flowLayout().header(section).translated(0, -verticalOffset());
        if (where.top() > area.bottom())
            break;
        paint(section, where);
    }
    paint(sticky->section, sticky->area);
    // Photos are under it.
    if (verticalOffset() > flowLayout().header(sticky->section).top())
        painter.fillRect(QRect{0, sticky->area.bottom(), sticky->area.width(), 1}, colours.line);
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

// --- Keyboard and pointer

int PhotoGridView::pageOfLines() const {
    const int line = flowLayout().cell(0).height() + FlowLayout::gap;
    return std::max(1, (viewport()->height() - HeaderPainter::height(font())) / std::max(1, line));
}

QModelIndex PhotoGridView::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/) {
    const int count = m_photos->rowCount();
    if (count == 0)
        return {};
    if (!currentIndex().isValid())
        return m_photos->index(action == MoveEnd ? count - 1 : 0);
    const int row = currentIndex().row();
    const int forward = isRightToLeft() ? -1 : 1;
    const auto at = [&](int wanted) { return m_photos->index(std::clamp(wanted, 0, count - 1)); };
    switch (action) {
    case MoveLeft:
        return at(row - forward);
    case MoveRight:
        return at(row + forward);
    case MoveUp:
        return at(flowLayout().rowAcross(row, -1));
    case MoveDown:
        return at(flowLayout().rowAcross(row, 1));
    case MovePageUp:
        return at(flowLayout().rowAcross(row, -pageOfLines()));
    case MovePageDown:
        return at(flowLayout().rowAcross(row, pageOfLines()));
    case MoveHome:
        return at(0);
    case MoveEnd:
        return at(count - 1);
    // Beyond the ends there is nothing: a caption's editor that is left there stays closed.
    case MoveNext:
        return row + 1 < count ? m_photos->index(row + 1) : QModelIndex{};
    case MovePrevious:
        return row > 0 ? m_photos->index(row - 1) : QModelIndex{};
    }
    return {};
}

void PhotoGridView::keyPressEvent(QKeyEvent* event) {
    const static std::map<int, CursorAction> moves{
        {Qt::Key_Left, MoveLeft},     {Qt::Key_Right, MoveRight},      {Qt::Key_Up, MoveUp},
        {Qt::Key_Down, MoveDown},     {Qt::Key_Home, MoveHome},        {Qt::Key_End, MoveEnd},
        {Qt::Key_PageUp, MovePageUp}, {Qt::Key_PageDown, MovePageDown}};
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (const auto move = moves.find(event->key()); move != moves.end() && !(modifiers & Qt::AltModifier)) {
        const QModelIndex to = moveCursor(move->second, modifiers);
        if (to.isValid()) {
            m_choice->chooseByKey(to.row(), modifiers);
            scrollTo(to);
        }
        event->accept();
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
        return;
    }
    const std::vector<Uuid> photos = m_choice->chosenOrCurrent();
    const bool isPlain = modifiers == Qt::NoModifier;
    if (event->key() == Qt::Key_Space && modifiers == Qt::ControlModifier && currentIndex().isValid())
        m_choice->choose(currentIndex().row(), Qt::ControlModifier);
    else if (event->key() == Qt::Key_Space && isPlain && !photos.empty())
        Q_EMIT decisionToggled(photos);
    else if (event->key() == Qt::Key_Delete && isPlain && !photos.empty())
        Q_EMIT removalRequested(photos);
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && isPlain &&
             currentIndex().isValid())
        askForLoupe(currentIndex().row());
    else if (event->key() == Qt::Key_F2 && isPlain && currentIndex().isValid())
        editCaption(currentIndex().row());
    else if (event->key() == Qt::Key_Escape && isPlain &&
             (m_pointer.frame() || selectionModel()->hasSelection())) {
        m_pointer.cancel();
        clearSelection();
    } else {
        // Letters do not search here: they may be the window's shortcuts.
        event->ignore();
        return;
    }
    event->accept();
}

void PhotoGridView::mousePressEvent(QMouseEvent* event) {
    m_pointer.press(*event);
}

void PhotoGridView::mouseMoveEvent(QMouseEvent* event) {
    m_pointer.move(*event);
}

void PhotoGridView::mouseReleaseEvent(QMouseEvent* event) {
    m_pointer.release(*event);
}

void PhotoGridView::mouseDoubleClickEvent(QMouseEvent* event) {
    m_pointer.doubleClick(*event);
}

void PhotoGridView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() & Qt::ControlModifier) {
        setTileSide(m_tileSide + event->angleDelta().y() / 8);
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

void PhotoGridView::contextMenuEvent(QContextMenuEvent* event) {
    QPoint where = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        if (!currentIndex().isValid())
            return;
        scrollTo(currentIndex());
        where = viewport()->mapToGlobal(visualRect(currentIndex()).center());
    } else {
        const Hit under = hit(event->pos());
        if (under.section >= 0) {
            const auto [first, end] = flowLayout().rowsOf(under.section);
            m_choice->chooseRange(first, end - 1, Qt::NoModifier);
        } else if (under.row < 0) {
            return;
        } else if (!m_choice->isChosen(under.row)) {
            m_choice->choose(under.row, Qt::NoModifier);
        }
    }
    if (!m_choice->chosenOrCurrent().empty())
        Q_EMIT menuRequested(where);
    event->accept();
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
        showToolTip(static_cast<const QHelpEvent&>(*event));
        return true;
    }
    if (event->type() == QEvent::Leave)
        hover({-1, -1});
    return QListView::viewportEvent(event);
}

void PhotoGridView::showToolTip(const QHelpEvent& event) {
    const Hit under = hit(event.pos());
    QString text;
    if (under.part == CellAreas::Part::approximate)
        text = QStringLiteral("Approximate location (inferred)");
    else if (under.part == CellAreas::Part::stack)
        text = QStringLiteral("Part of a duplicate group");
    else if (under.part == CellAreas::Part::missing)
        text = QStringLiteral("The photo’s file is missing");
    else if (under.part == CellAreas::Part::check)
        text = m_photos->photo(under.row).isSelected ? QStringLiteral("In the film")
                                                     : QStringLiteral("Left out");
    else if (under.part == CellAreas::Part::caption)
        text = QString::fromStdString(m_photos->photo(under.row).caption.value_or(std::string{}))
                   .toHtmlEscaped();
    QToolTip::showText(event.globalPos(), text, viewport());
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

// --- Wishes

std::optional<Uuid> PhotoGridView::current() const {
    return currentIndex().isValid() ? std::optional{m_photos->id(currentIndex().row())} : std::nullopt;
}

void PhotoGridView::show(const Uuid& photo) {
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

bool PhotoGridView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    if (trigger == EditKeyPressed || trigger == AllEditTriggers)
        scrollTo(index);
    const bool begins = QListView::edit(index, trigger, event);
    viewport()->update(visualRect(index));
    return begins;
}

void PhotoGridView::decide(int row) {
    Q_EMIT decisionToggled({m_photos->id(row)});
}

void PhotoGridView::askForLoupe(int row) {
    Q_EMIT loupeRequested(m_photos->id(row));
}

void PhotoGridView::askForGroup(int row) {
    Q_EMIT groupRequested(m_photos->id(row));
}

void PhotoGridView::drag(int row) {
    const std::vector<Uuid> photos = chosen();
    if (photos.empty())
        return;
    const Theme::Colours colours = Theme::colours(palette());
    const int side = flowLayout().tileSide();
    const QPixmap tile = m_pictures.picture(m_photos->photo(row), side, devicePixelRatioF(), colours.tile);
    auto* drag = new QDrag{this};
    drag->setMimeData(PhotoDrag::mimeData(photos).release());
    drag->setPixmap(PhotoDrag::picture(tile, photos.size(), colours, font(), devicePixelRatioF()));
    drag->setHotSpot({24, 24});
    drag->exec(Qt::MoveAction, Qt::MoveAction);
    m_dropZone->leave();
}

// --- What the list view would do by its own layout

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
    if (QAccessible::isActive() && current.isValid() && hasFocus()) {
        QAccessibleEvent event{this, QAccessible::Focus};
        event.setChild(current.row());
        QAccessible::updateAccessibility(&event);
    }
}

void PhotoGridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QAbstractItemView::selectionChanged(selected, deselected);
    Q_EMIT chosenChanged();
    if (!QAccessible::isActive())
        return;
    const auto tell = [this](QAccessible::Event what, const QItemSelection& rows) {
        if (rows.isEmpty())
            return;
        QAccessibleEvent event{this, what};
        event.setChild(rows.first().top());
        QAccessible::updateAccessibility(&event);
    };
    tell(QAccessible::SelectionRemove, deselected);
    tell(QAccessible::SelectionAdd, selected);
}

} // namespace Grid
