// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/ExitStatus.h>
#include <Roamly/CommandLine/Interruption.h>

#include <pthread.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <utility>

namespace CommandLine {

namespace {

/// Wakes the watcher when nothing is left to watch.
constexpr int wakeUp = SIGUSR1;

/// Who asks a program and then its whole group, as timeout(1) does, asks twice and means it once; and so may
/// somebody whose key bounced.
constexpr std::chrono::seconds sameRequest{1};

sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, wakeUp})
        sigaddset(&signals, signal);
    // Started with nohup, the work goes on when the terminal closes.
    struct sigaction action {};
    if (::sigaction(SIGHUP, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
        sigaddset(&signals, SIGHUP);
    return signals;
}

} // namespace

Interruption::Interruption(std::function<void()> lastly) {
    // A reader that went away shows as a failed write; the work's own clean-up can then run.
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    m_watcher = std::jthread{[this, signals, lastly = std::move(lastly)](const std::stop_token& ended) {
        std::chrono::steady_clock::time_point first;
        while (true) {
            int signal = 0;
            if (sigwait(&signals, &signal) != 0)
                continue;
            if (ended.stop_requested())
                return;
            if (signal == wakeUp)
                continue;
            const auto now = std::chrono::steady_clock::now();
            if (m_source.request_stop()) {
                first = now;
            } else if (now - first > sameRequest) {
                if (lastly)
                    lastly();
                ::_exit(ExitStatus::interrupted);
            }
        }
    }};
}

Interruption::~Interruption() {
    m_watcher.request_stop();
    pthread_kill(m_watcher.native_handle(), wakeUp);
}

} // namespace CommandLine
