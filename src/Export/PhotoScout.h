// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Export {

/// Has the photo after the one that is being drawn loaded before its turn: draws its first frame once, for
/// nobody, on a thread of its own. Decoding a large photo may take longer than the queue of finished frames
/// lasts, and the encoder would stand still.
class PhotoScout {
public:
    /// Worker's thread; what it throws is dropped, since the frame's own turn will show it.
    using Draw = std::function<void(std::int64_t frame)>;

    /// `firstFrames` are the photos' first frames, ascending. A photo that follows the one before it within
    /// `leastFrames` is left alone: there a frame more is no small price.
    PhotoScout(std::vector<std::int64_t> firstFrames, std::int64_t leastFrames, Draw draw);
    /// Waits for the frame in work.
    ~PhotoScout();
    PhotoScout(const PhotoScout&) = delete;
    PhotoScout& operator=(const PhotoScout&) = delete;

    /// Tells that a frame is about to be drawn. Thread-safe.
    void reach(std::int64_t frame);

private:
    void work();

    std::vector<std::int64_t> m_firstFrames;
    std::int64_t m_leastFrames;
    Draw m_draw;

    std::mutex m_mutex;
    std::condition_variable m_hasMoved;
    /// The highest frame that was reached.
    std::int64_t m_reached = -1;
    bool m_isEnding = false;

    std::jthread m_worker;
};

} // namespace Export
