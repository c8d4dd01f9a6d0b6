// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>
#include <Roamly/Window/Shell/WindowServices.h>

#include <QObject>
#include <QString>
#include <set>

namespace Stage {
class PlayerWindow;
} // namespace Stage

namespace Shell {

/// The slideshows that are playing. Each one plays its project as it was when it began.
class Players : public QObject {
    Q_OBJECT

public:
    explicit Players(WindowServices services, QObject* parent = nullptr);
    ~Players() override;

    /// `from` in seconds.
    void play(const ProjectModel::Project& project, const QString& name, double from, bool inWindow);
    void closeAll();
    [[nodiscard]] bool areAllClosed() const { return m_players.empty(); }

Q_SIGNALS:
    /// The last one closed.
    void allClosed();

private:
    WindowServices m_services;
    std::set<Stage::PlayerWindow*> m_players;
};

} // namespace Shell
