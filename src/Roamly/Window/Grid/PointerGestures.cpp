// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Grid/PointerGestures.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

namespace Grid {

using Part = CellAreas::Part;

void PointerGestures::press(const QMouseEvent& event) {
    m_pressedAt = m_pointer = event.position().toPoint();
    m_pending = Pending::nothing;
    m_mayDrag = false;
    m_isFraming = false;
    if (event.button() != Qt::LeftButton)
        return;
    const PhotoGridView::Hit hit = m_view->hit(m_pressedAt);
    m_row = hit.row;
    if (hit.section >= 0) {
        const auto [first, end] = m_view->flowLayout().rowsOf(hit.section);
        m_view->choice().chooseRange(first, end - 1, event.modifiers());
        return;
    }
    if (hit.row < 0) {
        m_pending = Pending::frame;
        m_frameFrom = m_view->toContent(m_pressedAt);
        m_view->choice().beginFrame((event.modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) != 0);
        return;
    }
    if (hit.part == Part::check) {
        m_pending = Pending::decide;
        return;
    }
    m_mayDrag = true;
    if (event.modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) {
        m_view->choice().choose(hit.row, event.modifiers());
        return;
    }
    // A photo among several stays chosen with them until the release: they may be about to be dragged.
    const bool isAmongChosen = m_view->choice().isChosen(hit.row);
    if (!isAmongChosen)
        m_view->choice().choose(hit.row, Qt::NoModifier);
    m_pending = hit.part == Part::caption ? Pending::editCaption
                : hit.part == Part::stack ? Pending::compare
                                          : Pending::chooseAlone;
}

void PointerGestures::move(const QMouseEvent& event) {
    m_pointer = event.position().toPoint();
    m_view->hover(m_pointer);
    if (!(event.buttons() & Qt::LeftButton))
        return;
    const bool isFar = (m_pointer - m_pressedAt).manhattanLength() >= QApplication::startDragDistance();
    if (m_pending == Pending::frame && (m_isFraming || isFar)) {
        m_isFraming = true;
        m_view->scrollNear(m_pointer);
        drawFrame();
    } else if (m_mayDrag && isFar) {
        const int row = m_row;
        cancel();
        m_view->drag(row);
    }
}

void PointerGestures::release(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton)
        return;
    const Pending pending = m_pending;
    const int row = m_row;
    const bool stayed = m_view->hit(event.position().toPoint()).row == row;
    cancel();
    if (!stayed)
        return;
    switch (pending) {
    case Pending::chooseAlone:
        m_view->choice().choose(row, Qt::NoModifier);
        break;
    case Pending::editCaption:
        m_view->choice().choose(row, Qt::NoModifier);
        m_view->editCaption(row);
        break;
    case Pending::decide:
        Q_EMIT m_view->decisionToggled({m_view->photos().id(row)});
        break;
    case Pending::compare:
        m_view->choice().choose(row, Qt::NoModifier);
        Q_EMIT m_view->groupRequested(m_view->photos().id(row));
        break;
    case Pending::frame:
    case Pending::nothing:
        break;
    }
}

void PointerGestures::doubleClick(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton)
        return;
    const PhotoGridView::Hit hit = m_view->hit(event.position().toPoint());
    if (hit.row < 0 || hit.part != Part::tile) {
        // The second press of two quick ones: two decisions, two clicks on a header.
        press(event);
        return;
    }
    cancel();
    Q_EMIT m_view->loupeRequested(m_view->photos().id(hit.row));
}

void PointerGestures::askForMenu(QContextMenuEvent& event) {
    QPoint where = event.globalPos();
    if (event.reason() == QContextMenuEvent::Keyboard) {
        const QModelIndex current = m_view->currentIndex();
        if (!current.isValid())
            return;
        m_view->scrollTo(current);
        where = m_view->viewport()->mapToGlobal(m_view->visualRect(current).center());
    } else {
        const PhotoGridView::Hit hit = m_view->hit(event.pos());
        if (hit.section >= 0) {
            const auto [first, end] = m_view->flowLayout().rowsOf(hit.section);
            m_view->choice().chooseRange(first, end - 1, Qt::NoModifier);
        } else if (hit.row < 0) {
            return;
        } else if (!m_view->choice().isChosen(hit.row)) {
            m_view->choice().choose(hit.row, Qt::NoModifier);
        }
    }
    event.accept();
    if (!m_view->choice().chosenOrCurrent().empty())
        Q_EMIT m_view->menuRequested(where);
}

void PointerGestures::showToolTip(const QHelpEvent& event) {
    const PhotoGridView::Hit hit = m_view->hit(event.pos());
    QString text;
    if (hit.part == Part::approximate)
        text = QStringLiteral("Approximate location (inferred)");
    else if (hit.part == Part::stack)
        text = QStringLiteral("Part of a duplicate group");
    else if (hit.part == Part::missing)
        text = QStringLiteral("The photo’s file is missing");
    else if (hit.part == Part::check)
        text = m_view->photos().photo(hit.row).isSelected ? QStringLiteral("In the film")
                                                          : QStringLiteral("Left out");
    else if (hit.part == Part::caption)
        text = QString::fromStdString(m_view->photos().photo(hit.row).caption.value_or(std::string{}))
                   .toHtmlEscaped();
    QToolTip::showText(event.globalPos(), text, m_view->viewport());
}

void PointerGestures::followScroll() {
    if (m_isFraming)
        drawFrame();
}

void PointerGestures::cancel() {
    m_pending = Pending::nothing;
    m_mayDrag = false;
    const bool wasFraming = m_isFraming;
    m_isFraming = false;
    m_view->stopScrolling();
    if (wasFraming)
        m_view->viewport()->update();
}

std::optional<QRect> PointerGestures::frame() const {
    if (!m_isFraming)
        return std::nullopt;
    return QRect{m_frameFrom, m_view->toContent(m_pointer)}.normalized();
}

void PointerGestures::drawFrame() {
    m_view->choice().chooseFramed(m_view->flowLayout().rowsIn(*frame()));
    m_view->viewport()->update();
}

} // namespace Grid
