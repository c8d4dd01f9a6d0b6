// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Window/Grid/FlowLayout.h>

#include <QList>
#include <QObject>
#include <QUrl>
#include <optional>
#include <vector>

class QDragMoveEvent;
class QDropEvent;

namespace Grid {

class EdgeScroll;
class PhotoGridView;

/// What is dragged over the grid: its own photos, which land between others, and files from elsewhere, which
/// are handed on.
class DropZone : public QObject {
    Q_OBJECT

public:
    /// Borrows both.
    DropZone(PhotoGridView& view, EdgeScroll& edgeScroll);

    void enterOrMove(QDragMoveEvent& event);
    void leave();
    void drop(QDropEvent& event);

    /// Where photos would land now.
    [[nodiscard]] const std::optional<FlowLayout::Slot>& slot() const { return m_slot; }
    /// Files are over the grid.
    [[nodiscard]] bool awaitsFiles() const { return m_awaitsFiles; }

Q_SIGNALS:
    /// What the view has to show is different.
    void changed();
    void photosDropped(const std::vector<Foundation::Uuid>& photos, const FlowLayout::Slot& slot);
    void urlsDropped(const QList<QUrl>& urls);

private:
    [[nodiscard]] bool isOwn(const QDropEvent& event) const;
    void set(const std::optional<FlowLayout::Slot>& slot, bool awaitsFiles);
    [[nodiscard]] std::optional<FlowLayout::Slot> slotAt(const QPoint& point) const;

    PhotoGridView* m_view;
    EdgeScroll* m_edgeScroll;
    std::optional<FlowLayout::Slot> m_slot;
    bool m_awaitsFiles = false;
};

} // namespace Grid
