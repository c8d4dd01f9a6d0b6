// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/Job.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace Jobs {

/// The actions that wait for a thread which has no event loop of its own, such as a command's. Any thread
/// adds to them; the one that owns the queue carries them out.
class ActionQueue {
public:
    /// Any thread.
    void post(std::function<void()> action);

    /// Carries out actions, and waits for more, until `isDone` holds; it is asked before each. What an action
    /// throws comes out here, and the actions after it stay.
    void runUntil(const std::function<bool()>& isDone);
    /// Carries out what is there now.
    void runPending();

    /// Posts to this queue, which must outlive it.
    [[nodiscard]] Executor executor() {
        return [this](std::function<void()> action) { post(std::move(action)); };
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_hasMore;
    std::deque<std::function<void()>> m_actions;
};

} // namespace Jobs
