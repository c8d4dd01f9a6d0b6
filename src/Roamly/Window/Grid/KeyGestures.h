// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QKeyEvent;

namespace Grid {

class PhotoGridView;

/// What keys mean in the grid: where they lead along the photos, and what they ask for. It tells the view,
/// which it borrows.
class KeyGestures {
public:
    explicit KeyGestures(PhotoGridView& view)
        : m_view(&view) {}

    /// Whether the key means something here. Letters do not: they may be the window's shortcuts.
    [[nodiscard]] bool press(const QKeyEvent& event);

private:
    /// The row a key leads to, from the current one; -1 for keys that lead nowhere.
    [[nodiscard]] int destination(int key) const;
    [[nodiscard]] bool ask(int key);

    PhotoGridView* m_view;
};

} // namespace Grid
