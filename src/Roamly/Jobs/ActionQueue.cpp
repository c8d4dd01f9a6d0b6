// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/ActionQueue.h>

#include <utility>

namespace Jobs {

void ActionQueue::post(std::function<void()> action) {
    {
        const std::scoped_lock lock{m_mutex};
        m_actions.push_back(std::move(action));
    }
    m_hasMore.notify_one();
}

void ActionQueue::runUntil(const std::function<bool()>& isDone) {
    while (!isDone()) {
        std::unique_lock lock{m_mutex};
        m_hasMore.wait(lock, [this] { return !m_actions.empty(); });
        const std::function<void()> action = std::move(m_actions.front());
        m_actions.pop_front();
        lock.unlock();
        action();
    }
}

void ActionQueue::runPending() {
    std::size_t left = 0;
    {
        const std::scoped_lock lock{m_mutex};
        left = m_actions.size();
    }
    runUntil([&left] { return left-- == 0; });
}

} // namespace Jobs
