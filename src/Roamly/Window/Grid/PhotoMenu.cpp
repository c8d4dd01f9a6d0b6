// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoMenu.h>

#include <QAction>

namespace Grid {

PhotoMenu::PhotoMenu(const PhotoMenuState& state, QWidget* parent)
    : QMenu(parent) {
    setAccessibleName(QStringLiteral("Photo"));
    setToolTipsVisible(true);
    const bool isOne = state.photos == 1;
    const QString onlyOne = isOne ? QString{} : QStringLiteral("Choose one photo");

    const auto add = [this](const QString& text, const QString& whyNot, auto signal,
                            const QKeySequence& keys = {}) {
        QAction* action = addAction(text);
        action->setEnabled(whyNot.isEmpty());
        action->setShortcut(keys);
        if (!whyNot.isEmpty()) {
            action->setToolTip(whyNot);
            action->setStatusTip(whyNot);
        }
        connect(action, &QAction::triggered, this, signal);
        return action;
    };
    const auto firstOf = [](const QString& one, const QString& other) { return one.isEmpty() ? other : one; };

    add(
        QStringLiteral("Open"), onlyOne, [this] { Q_EMIT openRequested(); }, Qt::Key_Return);
    if (state.isInGroup)
        add(QStringLiteral("Compare Group"), onlyOne, [this] { Q_EMIT compareRequested(); });
    addSeparator();
    const bool leavesOut = state.areAllInTheFilm;
    add(
        leavesOut ? QStringLiteral("Leave Out") : QStringLiteral("Select"), {},
        [this, leavesOut] { Q_EMIT decisionRequested(!leavesOut); }, Qt::Key_Space);
    add(
        QStringLiteral("Edit Caption"), onlyOne, [this] { Q_EMIT captionEditRequested(); }, Qt::Key_F2);
    add(QStringLiteral("Regenerate Caption"), firstOf(onlyOne, state.whyNoCaption),
        [this] { Q_EMIT captionRegenerationRequested(); });
    add(QStringLiteral("Set Place…"), {}, [this] { Q_EMIT placeRequested(); });
    addSeparator();
    add(QStringLiteral("Select Chapter"), onlyOne, [this] { Q_EMIT chapterRequested(); });
    add(QStringLiteral("Show in Files"), firstOf(onlyOne, state.whyNoFile),
        [this] { Q_EMIT fileRequested(); });
    addSeparator();
    add(
        QStringLiteral("Remove from Project"), {}, [this] { Q_EMIT removalRequested(); }, Qt::Key_Delete);
}

} // namespace Grid
