// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/Situation.h>

#include <QAction>
#include <QObject>
#include <map>

namespace Shell {

/// A window's actions, one an intent: its text, icon, keys and help, for menus and bars alike.
class Actions : public QObject {
    Q_OBJECT

public:
    explicit Actions(QObject* parent = nullptr);

    [[nodiscard]] QAction* operator[](Intent intent) const { return m_actions.at(intent); }
    [[nodiscard]] const std::map<Intent, QAction*>& all() const { return m_actions; }

    /// Lets the actions be as the situation wants them.
    void show(const Situation& situation);

Q_SIGNALS:
    void wanted(Shell::Intent intent);

private:
    std::map<Intent, QAction*> m_actions;
};

} // namespace Shell
