// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/SpokenEvents.h>

#include <QAccessible>
#include <QItemSelection>
#include <QListView>

namespace Grid::SpokenEvents {

namespace {

/// Items are the view's children in the order of their rows.
void tell(QListView& view, QAccessible::Event what, int row) {
    QAccessibleEvent event{&view, what};
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void tellCurrent(QListView& view, const QModelIndex& current) {
    if (QAccessible::isActive() && current.isValid())
        tell(view, QAccessible::Focus, current.row());
}

void tellSelection(QListView& view, const QItemSelection& selected, const QItemSelection& deselected) {
    if (!QAccessible::isActive())
        return;
    if (!deselected.isEmpty())
        tell(view, QAccessible::SelectionRemove, deselected.first().top());
    if (!selected.isEmpty())
        tell(view, QAccessible::SelectionAdd, selected.first().top());
}

} // namespace Grid::SpokenEvents
