// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPoint>
#include <QRect>
#include <optional>

class QContextMenuEvent;
class QHelpEvent;
class QMouseEvent;

namespace Grid {

class PhotoGridView;

/// What presses, moves and releases of the pointer over the grid mean: choosing, deciding, a caption to edit,
/// a frame drawn over photos, photos picked up. It tells the view, which it borrows.
class PointerGestures {
public:
    explicit PointerGestures(PhotoGridView& view)
        : m_view(&view) {}

    void press(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    void doubleClick(const QMouseEvent& event);
    /// By the pointer or by the menu key.
    void askForMenu(QContextMenuEvent& event);
    void showToolTip(const QHelpEvent& event);
    /// The content moved under the pointer that draws a frame.
    void followScroll();
    /// Gives up what is under way.
    void cancel();

    /// The frame that is drawn, in the content's coordinates.
    [[nodiscard]] std::optional<QRect> frame() const;

private:
    enum class Pending {
        nothing,
        /// A release without moving chooses this photo alone, or edits its caption.
        chooseAlone,
        editCaption,
        decide,
        compare,
        frame,
    };

    void drawFrame();

    PhotoGridView* m_view;
    Pending m_pending = Pending::nothing;
    int m_row = -1;
    /// In the viewport's coordinates.
    QPoint m_pressedAt;
    QPoint m_pointer;
    /// In the content's coordinates; set once the frame is drawn.
    QPoint m_frameFrom;
    bool m_isFraming = false;
    bool m_mayDrag = false;
};

} // namespace Grid
