// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/YuvFrame.h>

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace Export {

/// Renders frames 0 … count − 1 ahead on threads of its own and hands them out in order. At most `capacity`
/// frames are finished or in work at a time.
///
/// A thread takes the lowest frame that nobody has taken, as long as it lies less than `capacity` after the
/// one that is to be handed out next; otherwise it sleeps until a frame is handed out. The first failure ends
/// all.
class RenderQueue {
public:
    /// Worker's thread.
    using Render = std::function<std::shared_ptr<const Frames::YuvFrame>(std::int64_t index)>;

    RenderQueue(std::int64_t count, int workers, int capacity, Render render);
    /// Waits for the frames in work.
    ~RenderQueue();
    RenderQueue(const RenderQueue&) = delete;
    RenderQueue& operator=(const RenderQueue&) = delete;

    /// The next frame; waits for it. To be called `count` times at the most. Throws what a rendering threw as
    /// soon as one did, and ExportError (cancelled) as soon as `stop` is requested.
    [[nodiscard]] std::shared_ptr<const Frames::YuvFrame> next(const std::stop_token& stop);

private:
    void work();

    std::int64_t m_count;
    Render m_render;

    std::mutex m_mutex;
    std::condition_variable_any m_isFinished;
    std::condition_variable m_hasRoom;
    /// Finished frames, each at its index modulo the capacity.
    std::vector<std::shared_ptr<const Frames::YuvFrame>> m_frames;
    /// The lowest frame not taken by a thread, and the one to hand out next.
    std::int64_t m_nextToRender = 0;
    std::int64_t m_nextToHandOut = 0;
    std::exception_ptr m_failure;
    bool m_isEnding = false;

    std::vector<std::jthread> m_workers;
};

} // namespace Export
