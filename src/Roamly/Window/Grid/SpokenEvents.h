// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QItemSelection;
class QListView;
class QModelIndex;

/// What a view that lays out its rows itself must tell screen readers: the list view's own way of finding a
/// row asks the layout that is not in use.
namespace Grid::SpokenEvents {

void tellCurrent(QListView& view, const QModelIndex& current);
void tellSelection(QListView& view, const QItemSelection& selected, const QItemSelection& deselected);

} // namespace Grid::SpokenEvents
