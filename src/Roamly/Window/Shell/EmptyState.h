// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>
#include <filesystem>
#include <vector>

class QVBoxLayout;

namespace Shell {

/// What a window shows of a project without photos: how to begin, and the projects of before.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    explicit EmptyState(QWidget* parent = nullptr);

    /// The newest first.
    void setRecentProjects(const std::vector<std::filesystem::path>& projects);

Q_SIGNALS:
    void importWanted();
    void openWanted(const std::filesystem::path& project);

private:
    QWidget* m_recent = nullptr;
    QVBoxLayout* m_recentList = nullptr;
};

} // namespace Shell
