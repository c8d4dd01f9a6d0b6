// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/PhotoScout.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace Export {

PhotoScout::PhotoScout(std::vector<std::int64_t> firstFrames, std::int64_t leastFrames, Draw draw)
    : m_firstFrames(std::move(firstFrames))
    , m_leastFrames(leastFrames)
    , m_draw(std::move(draw))
    , m_worker([this] { work(); }) {}

PhotoScout::~PhotoScout() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_hasMoved.notify_one();
}

void PhotoScout::reach(std::int64_t frame) {
    {
        const std::lock_guard lock(m_mutex);
        m_reached = std::max(m_reached, frame);
    }
    m_hasMoved.notify_one();
}

void PhotoScout::work() {
    std::unique_lock lock(m_mutex);
    for (std::size_t photo = 1; photo < m_firstFrames.size(); ++photo) {
        const std::int64_t previous = m_firstFrames[photo - 1];
        const std::int64_t first = m_firstFrames[photo];
        m_hasMoved.wait(lock, [&] { return m_isEnding || m_reached >= previous; });
        if (m_isEnding)
            return;
        if (first - previous < m_leastFrames || m_reached >= first)
            continue;
        lock.unlock();
        try {
            m_draw(first);
        } catch (...) {
        }
        lock.lock();
    }
}

} // namespace Export
