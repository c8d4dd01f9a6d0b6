// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/Choice.h>
#include <Roamly/Window/Grid/PhotoListModel.h>

#include <QItemSelectionModel>
#include <algorithm>

namespace Grid {

using Foundation::Uuid;
using Selection = QItemSelectionModel;

Choice::Choice(const PhotoListModel& photos, QItemSelectionModel& selection)
    : m_photos(&photos)
    , m_selection(&selection) {}

bool Choice::isChosen(int row) const {
    return m_selection->isSelected(m_photos->index(row));
}

std::vector<Uuid> Choice::chosen() const {
    std::vector<int> rows;
    const QItemSelection ranges = m_selection->selection();
    for (const QItemSelectionRange& range : ranges) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    std::vector<Uuid> ids;
    ids.reserve(rows.size());
    for (const int row : rows)
        ids.push_back(m_photos->id(row));
    return ids;
}

std::vector<Uuid> Choice::chosenOrCurrent() const {
    std::vector<Uuid> ids = chosen();
    if (ids.empty() && currentRow() >= 0)
        ids.push_back(m_photos->id(currentRow()));
    return ids;
}

int Choice::currentRow() const {
    return m_selection->currentIndex().row();
}

void Choice::choose(int row, Qt::KeyboardModifiers modifiers) {
    const QModelIndex index = m_photos->index(row);
    if (!index.isValid())
        return;
    if (modifiers & Qt::ShiftModifier) {
        const QModelIndex from = m_anchor.isValid() ? QModelIndex{m_anchor} : index;
        m_anchor = from;
        const QModelIndex first = std::min(from, index);
        const QModelIndex last = std::max(from, index);
        m_selection->select({first, last},
                            modifiers & Qt::ControlModifier ? Selection::Select : Selection::ClearAndSelect);
        m_selection->setCurrentIndex(index, Selection::NoUpdate);
        return;
    }
    m_anchor = index;
    m_selection->setCurrentIndex(index, modifiers & Qt::ControlModifier ? Selection::Toggle
                                                                        : Selection::ClearAndSelect);
}

void Choice::chooseByKey(int row, Qt::KeyboardModifiers modifiers) {
    if ((modifiers & Qt::ControlModifier) && !(modifiers & Qt::ShiftModifier))
        m_selection->setCurrentIndex(m_photos->index(row), Selection::NoUpdate);
    else
        choose(row, modifiers);
}

void Choice::chooseRange(int first, int last, Qt::KeyboardModifiers modifiers) {
    if (first > last || last >= m_photos->rowCount())
        return;
    const bool adds = (modifiers & (Qt::ControlModifier | Qt::ShiftModifier)) != 0;
    m_anchor = m_photos->index(first);
    m_selection->setCurrentIndex(m_anchor, Selection::NoUpdate);
    m_selection->select({m_photos->index(first), m_photos->index(last)},
                        adds ? Selection::Select : Selection::ClearAndSelect);
}

void Choice::chooseAll() {
    if (m_photos->rowCount() > 0) {
        m_selection->select({m_photos->index(0), m_photos->index(m_photos->rowCount() - 1)},
                            Selection::ClearAndSelect);
    }
}

void Choice::beginFrame(bool keepsChosen) {
    m_beforeFrame = keepsChosen ? m_selection->selection() : QItemSelection{};
    if (!keepsChosen)
        m_selection->clearSelection();
}

void Choice::chooseFramed(const std::vector<std::pair<int, int>>& ranges) {
    QItemSelection selection = m_beforeFrame;
    QItemSelection framed;
    for (const auto& [first, last] : ranges)
        framed.append({m_photos->index(first), m_photos->index(last)});
    selection.merge(framed, Selection::Select);
    m_selection->select(selection, Selection::ClearAndSelect);
    if (!ranges.empty()) {
        m_anchor = m_photos->index(ranges.front().first);
        m_selection->setCurrentIndex(m_photos->index(ranges.back().second), Selection::NoUpdate);
    }
}

void Choice::makeCurrentBeside(const std::vector<std::size_t>& removed) {
    const auto isRemoved = [&](int row) {
        return std::binary_search(removed.begin(), removed.end(), static_cast<std::size_t>(row));
    };
    const int before = currentRow();
    if (before < 0 || !isRemoved(before))
        return;
    int row = before;
    while (row < m_photos->rowCount() && isRemoved(row))
        ++row;
    if (row == m_photos->rowCount()) {
        row = before;
        while (row >= 0 && isRemoved(row))
            --row;
    }
    m_anchor = m_photos->index(row);
    m_selection->setCurrentIndex(m_anchor, Selection::ClearAndSelect);
}

} // namespace Grid
