// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/KeyGestures.h>
#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Grid/PhotoListModel.h>

#include <QKeyEvent>
#include <algorithm>

namespace Grid {

namespace {

bool leadsAlong(int key) {
    constexpr int keys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                            Qt::Key_Home, Qt::Key_End,   Qt::Key_PageUp, Qt::Key_PageDown};
    return std::find(std::begin(keys), std::end(keys), key) != std::end(keys);
}

} // namespace

bool KeyGestures::press(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (leadsAlong(event.key()) && !(modifiers & (Qt::AltModifier | Qt::MetaModifier))) {
        if (m_view->photos().rowCount() > 0) {
            const int row = destination(event.key());
            m_view->choice().chooseByKey(row, modifiers);
            m_view->scrollTo(m_view->photos().index(row));
        }
        return true;
    }
    if (event.matches(QKeySequence::SelectAll)) {
        m_view->selectAll();
        return true;
    }
    const int current = m_view->choice().currentRow();
    if (event.key() == Qt::Key_Space && modifiers == Qt::ControlModifier && current >= 0) {
        m_view->choice().choose(current, Qt::ControlModifier);
        return true;
    }
    return modifiers == Qt::NoModifier && ask(event.key());
}

bool KeyGestures::ask(int key) {
    const int current = m_view->choice().currentRow();
    const std::vector<Foundation::Uuid> photos = m_view->choice().chosenOrCurrent();
    switch (key) {
    case Qt::Key_Space:
        if (!photos.empty())
            Q_EMIT m_view->decisionToggled(photos);
        return true;
    case Qt::Key_Delete:
        if (!photos.empty())
            Q_EMIT m_view->removalRequested(photos);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (current >= 0)
            Q_EMIT m_view->loupeRequested(m_view->photos().id(current));
        return true;
    case Qt::Key_F2:
        m_view->editCurrentCaption();
        return true;
    case Qt::Key_Escape:
        return m_view->giveUp();
    default:
        return false;
    }
}

int KeyGestures::destination(int key) const {
    const FlowLayout& layout = m_view->flowLayout();
    const int last = m_view->photos().rowCount() - 1;
    const int row = m_view->choice().currentRow();
    if (row < 0)
        return key == Qt::Key_End ? last : 0;
    const int forward = m_view->isRightToLeft() ? -1 : 1;
    const int page =
        std::max(1, (m_view->viewport()->height() - layout.headerHeight()) / layout.lineHeight());
    switch (key) {
    case Qt::Key_Left:
        return std::clamp(row - forward, 0, last);
    case Qt::Key_Right:
        return std::clamp(row + forward, 0, last);
    case Qt::Key_Up:
        return layout.rowAcross(row, -1);
    case Qt::Key_Down:
        return layout.rowAcross(row, 1);
    case Qt::Key_PageUp:
        return layout.rowAcross(row, -page);
    case Qt::Key_PageDown:
        return layout.rowAcross(row, page);
    case Qt::Key_Home:
        return 0;
    default:
        return last;
    }
}

} // namespace Grid
