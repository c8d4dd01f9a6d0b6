// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>

#include <QItemSelection>
#include <QPersistentModelIndex>
#include <utility>
#include <vector>

class QItemSelectionModel;

namespace Grid {

class PhotoListModel;

/// The grid's own selection: which photos the user's wishes apply to, and how gestures change that. Ranges
/// run along the flow of the photos.
class Choice {
public:
    /// Borrows both, of which the second selects in the first.
    Choice(const PhotoListModel& photos, QItemSelectionModel& selection);

    [[nodiscard]] bool isChosen(int row) const;
    /// In their order.
    [[nodiscard]] std::vector<Foundation::Uuid> chosen() const;
    /// The chosen photos; without any the current one.
    [[nodiscard]] std::vector<Foundation::Uuid> chosenOrCurrent() const;
    /// Nothing is chosen, and where is the keyboard: -1 for nowhere.
    [[nodiscard]] int currentRow() const;

    /// Plain: this photo alone. Control: adds it or takes it away. Shift: from where the last choice began to
    /// here, with Control in addition to what is chosen.
    void choose(int row, Qt::KeyboardModifiers modifiers);
    /// The same by keys, where Control moves the keyboard and changes nothing.
    void chooseByKey(int row, Qt::KeyboardModifiers modifiers);
    /// All rows from the first to the last; with Control or Shift in addition.
    void chooseRange(int first, int last, Qt::KeyboardModifiers modifiers);
    void chooseAll();

    /// A frame is drawn over photos: it chooses from what was chosen when it began.
    void beginFrame(bool keepsChosen);
    void chooseFramed(const std::vector<std::pair<int, int>>& ranges);

    /// Rows are about to go: the keyboard moves from one of them to the photo after it, which it chooses.
    void makeCurrentBeside(const std::vector<std::size_t>& removed);

private:
    const PhotoListModel* m_photos;
    QItemSelectionModel* m_selection;
    /// Where ranges begin.
    QPersistentModelIndex m_anchor;
    QItemSelection m_beforeFrame;
};

} // namespace Grid
