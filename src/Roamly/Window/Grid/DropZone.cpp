// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/DropZone.h>
#include <Roamly/Window/Grid/EdgeScroll.h>
#include <Roamly/Window/Grid/PhotoDrag.h>
#include <Roamly/Window/Grid/PhotoGridView.h>

#include <QDropEvent>
#include <QMimeData>

namespace Grid {

DropZone::DropZone(PhotoGridView& view, EdgeScroll& edgeScroll)
    : QObject(&view)
    , m_view(&view)
    , m_edgeScroll(&edgeScroll) {}

bool DropZone::isOwn(const QDropEvent& event) const {
    return event.source() == m_view && PhotoDrag::holdsPhotos(*event.mimeData());
}

std::optional<FlowLayout::Slot> DropZone::slotAt(const QPoint& point) const {
    return m_view->flowLayout().slotAt(m_view->toContent(point));
}

void DropZone::enterOrMove(QDragMoveEvent& event) {
    const QPoint point = event.position().toPoint();
    if (isOwn(event)) {
        m_edgeScroll->pointAt(point.y());
        set(slotAt(point), false);
        event.setDropAction(Qt::MoveAction);
        event.accept();
    } else if (event.mimeData()->hasUrls()) {
        set(std::nullopt, true);
        event.setDropAction(Qt::CopyAction);
        event.accept();
    } else {
        event.ignore();
    }
}

void DropZone::leave() {
    m_edgeScroll->stop();
    set(std::nullopt, false);
}

void DropZone::drop(QDropEvent& event) {
    leave();
    if (isOwn(event)) {
        if (const auto slot = slotAt(event.position().toPoint()))
            Q_EMIT photosDropped(PhotoDrag::photos(*event.mimeData()), *slot);
        event.setDropAction(Qt::MoveAction);
        event.accept();
    } else if (event.mimeData()->hasUrls()) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
        Q_EMIT urlsDropped(event.mimeData()->urls());
    } else {
        event.ignore();
    }
}

void DropZone::set(const std::optional<FlowLayout::Slot>& slot, bool awaitsFiles) {
    if (slot == m_slot && awaitsFiles == m_awaitsFiles)
        return;
    m_slot = slot;
    m_awaitsFiles = awaitsFiles;
    Q_EMIT changed();
}

} // namespace Grid
