// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/EventLoop.h>
#include <Roamly/Window/Shell/RecoveryKeeper.h>

#include <utility>

namespace Shell {

RecoveryKeeper::RecoveryKeeper(const Document::ProjectDocument& document, RecoveryPlace place,
                               QObject* parent)
    : QObject(parent)
    , m_document(&document)
    , m_place(std::make_shared<const RecoveryPlace>(std::move(place)))
    , m_isKept(m_place->holdsCopy)
    , m_job(std::make_unique<Jobs::Job>(executorOf(this), Jobs::Job::WhenStopped::RunOut)) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(delay);
    connect(&m_timer, &QTimer::timeout, this, &RecoveryKeeper::keep);
}

RecoveryKeeper::~RecoveryKeeper() = default;

void RecoveryKeeper::update() {
    // Not begun anew by each change, or somebody who never pauses would have nothing kept.
    if (m_document->isModified()) {
        if (!m_timer.isActive())
            m_timer.start();
    } else if (m_isKept || m_timer.isActive()) {
        m_timer.stop();
        keep();
    }
}

void RecoveryKeeper::finish() {
    m_timer.stop();
    m_job.reset();
    if (std::exchange(m_isKept, false))
        m_place->remove();
}

void RecoveryKeeper::keep() {
    if (m_job->isRunning()) {
        m_isBehind = true;
        return;
    }
    m_isBehind = false;
    const auto whenDone = [this](const Jobs::Job::Ending&) {
        if (m_isBehind)
            keep();
    };
    if (!m_document->isModified()) {
        if (std::exchange(m_isKept, false))
            (void)m_job->start(
                [place = m_place](const Jobs::Job::Run&) -> Jobs::Job::Landing {
                    place->remove();
                    return {};
                },
                whenDone);
        return;
    }
    m_isKept = true;
    (void)m_job->start(
        [place = m_place, original = m_place->path(),
         project = m_document->project()](const Jobs::Job::Run&) -> Jobs::Job::Landing {
            place->write(project, original);
            return {};
        },
        whenDone);
}

} // namespace Shell
