// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Export/RenderQueue.h>

#include <algorithm>
#include <utility>

namespace Export {

RenderQueue::RenderQueue(std::int64_t count, int workers, int capacity, Render render)
    : m_count(count)
    , m_render(std::move(render))
    , m_frames(static_cast<std::size_t>(std::max(capacity, 1))) {
    for (int i = 0; i < std::max(workers, 1); ++i)
        m_workers.emplace_back([this] { work(); });
}

RenderQueue::~RenderQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_hasRoom.notify_all();
    m_workers.clear();
}

std::shared_ptr<const Frames::YuvFrame> RenderQueue::next(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    auto& slot = m_frames[static_cast<std::size_t>(m_nextToHandOut) % m_frames.size()];
    m_isFinished.wait(lock, stop, [&] { return slot || m_failure; });
    if (stop.stop_requested())
        throw ExportError(ExportError::Kind::cancelled);
    if (m_failure)
        std::rethrow_exception(m_failure);
    auto frame = std::exchange(slot, nullptr);
    ++m_nextToHandOut;
    lock.unlock();
    m_hasRoom.notify_one();
    return frame;
}

void RenderQueue::work() {
    const auto capacity = static_cast<std::int64_t>(m_frames.size());
    std::unique_lock lock(m_mutex);
    while (true) {
        m_hasRoom.wait(lock, [&] {
            return m_isEnding || m_failure || m_nextToRender >= m_count ||
                   m_nextToRender < m_nextToHandOut + capacity;
        });
        if (m_isEnding || m_failure || m_nextToRender >= m_count)
            return;
        const std::int64_t index = m_nextToRender++;
        lock.unlock();
        std::shared_ptr<const Frames::YuvFrame> frame;
        std::exception_ptr failure;
        try {
            frame = m_render(index);
            if (!frame)
                throw ExportError(ExportError::Kind::appendFailed, "a frame could not be drawn");
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        m_frames[static_cast<std::size_t>(index % capacity)] = std::move(frame);
        if (failure && !m_failure)
            m_failure = std::move(failure);
        m_isFinished.notify_one();
        if (m_failure)
            m_hasRoom.notify_all();
    }
}

} // namespace Export
