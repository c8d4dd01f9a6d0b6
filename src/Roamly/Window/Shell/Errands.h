// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/Job.h>

#include <QObject>
#include <deque>
#include <functional>

namespace Shell {

/// Short work that may wait for a disk, a keyring or a network, done one after the other on a worker.
class Errands : public QObject {
    Q_OBJECT

public:
    explicit Errands(QObject* parent = nullptr);
    /// Finishes the one that runs; those after it are not begun.
    ~Errands() override;

    /// What it throws is nobody's concern.
    void add(Jobs::Job::Work work);

private:
    void next();

    std::deque<Jobs::Job::Work> m_waiting;
    Jobs::Job m_job;
};

} // namespace Shell
