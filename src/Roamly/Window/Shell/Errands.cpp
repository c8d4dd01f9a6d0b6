// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/Errands.h>
#include <Roamly/Window/Shell/EventLoop.h>

#include <utility>

namespace Shell {

Errands::Errands(QObject* parent)
    : QObject(parent)
    , m_job(executorOf(this), Jobs::Job::WhenStopped::RunOut) {}

Errands::~Errands() = default;

void Errands::add(Jobs::Job::Work work) {
    m_waiting.push_back(std::move(work));
    next();
}

void Errands::next() {
    if (m_job.isRunning() || m_waiting.empty())
        return;
    Jobs::Job::Work work = std::move(m_waiting.front());
    m_waiting.pop_front();
    (void)m_job.start(std::move(work), [this](const Jobs::Job::Ending&) { next(); });
}

} // namespace Shell
