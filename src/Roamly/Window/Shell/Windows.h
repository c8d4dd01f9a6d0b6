// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/LaunchRequest.h>
#include <Roamly/Window/Shell/WindowServices.h>

#include <QObject>
#include <QString>
#include <filesystem>
#include <memory>
#include <vector>

namespace Shell {

class ApplicationSheets;
class Players;
class ProjectWindow;

/// The program's windows: one for each open project.
class Windows : public QObject {
    Q_OBJECT

public:
    explicit Windows(WindowServices services, QObject* parent = nullptr);
    ~Windows() override;

    /// `activationToken` lets the window come to the front; it may be empty.
    void carryOut(const LaunchRequest& request, const QString& activationToken = {});

    ProjectWindow& openNew();
    /// Shows the project in its window: the one that has it, an untouched one, or a new one.
    ProjectWindow& open(const std::filesystem::path& project);
    /// Offers what a crash left, one after the other, over the window in front.
    void offer(std::vector<LeftOver> leftOvers);
    /// Shows what a crash left in a window of its own, unsaved.
    void recover(const LeftOver& leftOver);
    /// Closes one window after the other, until the user refuses.
    void quit();

    [[nodiscard]] const std::vector<ProjectWindow*>& all() const { return m_windows; }

Q_SIGNALS:
    /// The last one closed, players too.
    void allClosed();

private:
    ProjectWindow& add(const MakeRecoveryPlace& recovery);
    void bringForward(ProjectWindow& window, const QString& activationToken);
    void remove(ProjectWindow* window);
    void play(const PlayProject& request, const QString& activationToken);
    void play(const std::filesystem::path& project, double from, bool inWindow);
    void tellIfAllClosed();

    WindowServices m_services;
    std::vector<ProjectWindow*> m_windows;
    ApplicationSheets* m_sheets;
    Players* m_players;
    bool m_isQuitting = false;
};

} // namespace Shell
