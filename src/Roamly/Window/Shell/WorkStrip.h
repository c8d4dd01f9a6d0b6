// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/TimeLeft.h>
#include <Roamly/Window/Shell/WorkRows.h>

#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <optional>

class QVBoxLayout;

namespace Shell {

class WorkRowView;

/// The work that runs, a row each: what is done, of how much, for how long still, and Cancel. Takes no room
/// while nothing runs.
class WorkStrip : public QWidget {
    Q_OBJECT

public:
    /// `now` gives seconds, for the time left.
    explicit WorkStrip(std::function<double()> now, QWidget* parent = nullptr);
    ~WorkStrip() override;

    /// Shows, changes or, without a row, takes away the row of that work.
    void show(WorkKind kind, const std::optional<WorkRow>& row);

Q_SIGNALS:
    void cancelled(Shell::WorkKind kind);

private:
    struct Entry {
        WorkRowView* view = nullptr;
        Jobs::TimeLeft timeLeft;
    };

    std::function<double()> m_now;
    QVBoxLayout* m_layout = nullptr;
    std::map<WorkKind, Entry> m_entries;
};

} // namespace Shell
