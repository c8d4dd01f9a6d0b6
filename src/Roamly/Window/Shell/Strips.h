// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/WorkRows.h>

#include <QString>
#include <QStringList>
#include <QWidget>
#include <cstddef>
#include <functional>
#include <optional>

namespace Shell {

class IssueStrip;
class WorkStrip;

/// What lies under the photos while there is something to tell: the work that runs, what it could not do,
/// photos whose files are gone, and another program that is waited for.
class Strips : public QWidget {
    Q_OBJECT

public:
    /// `now` gives seconds, for the time left.
    explicit Strips(std::function<double()> now, QWidget* parent = nullptr);

    void showWork(WorkKind kind, const std::optional<WorkRow>& row);
    void showIssues(const QStringList& issues, bool canRetry);
    void showMissing(std::size_t photos);
    /// For another program, which uses the project of that name; an empty name: for none.
    void showWaiting(const QString& project);

Q_SIGNALS:
    void cancelled(Shell::WorkKind kind);
    void retryWanted();
    void locateWanted();
    void waitingGivenUp();

private:
    WorkStrip* m_work;
    IssueStrip* m_waiting;
    IssueStrip* m_issues;
    IssueStrip* m_missing;
    std::size_t m_missingCount = 0;
    /// How many were missing when the user put the list away.
    std::size_t m_knownMissing = 0;
};

} // namespace Shell
