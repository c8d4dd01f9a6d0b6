// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/FrameSize.h>
#include <Frames/FrameSource.h>
#include <Timeline/Playhead.h>

#include <QImage>
#include <QSize>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace Stage {

/// Draws a film ahead of its time on a thread of its own. What comes too late is left out, and while the
/// machine is late the pictures are made smaller; the time never waits for them. All calls by the owner's
/// thread.
class FrameFeed {
public:
    using MakeSource = std::function<std::unique_ptr<Frames::FrameSource>()>;

    struct Picture {
        /// When it is due, in seconds of the film.
        double time = 0;
        /// Null where nothing could be drawn.
        QImage image;
    };

    /// `makeSource` is called on the feed's thread, as is `ready`, after each picture that came.
    FrameFeed(MakeSource makeSource, Timeline::Playhead playhead, std::function<void()> ready);
    /// Waits for the picture that is being drawn.
    ~FrameFeed();
    FrameFeed(const FrameFeed&) = delete;
    FrameFeed& operator=(const FrameFeed&) = delete;

    /// The size to draw at, in pixels; all pictures are drawn anew from `time` on.
    void resize(QSize size, double time);
    /// All pictures are drawn anew from `time` on, which is drawn at once.
    void jump(double time);
    /// The film is at `time`. While it stands, what is on screen is drawn in full size.
    void follow(double time, bool isPlaying);

    /// The newest picture that is due at the time told last; nothing new since the last call is nothing.
    [[nodiscard]] std::optional<Picture> take();

private:
    void run();
    void restart(double time);
    void judge(bool isLate);
    [[nodiscard]] bool hasWork() const;
    [[nodiscard]] Frames::FrameSize drawingSize() const;

    MakeSource m_makeSource;
    Timeline::Playhead m_playhead;
    std::function<void()> m_ready;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_isEnding = false;
    QSize m_size;
    double m_now = 0;
    bool m_isPlaying = false;
    /// When the next picture to be drawn is due.
    double m_next = 0;
    /// What is drawn for an earlier one is thrown away.
    std::uint64_t m_generation = 0;
    std::deque<Picture> m_pictures;
    bool m_isFirst = true;
    /// How much smaller than the screen pictures are drawn: 0 not at all.
    std::size_t m_step = 0;
    int m_late = 0;
    int m_early = 0;
    /// Last: it uses the others.
    std::thread m_thread;
};

} // namespace Stage
