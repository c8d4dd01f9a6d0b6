// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/MusicPass.h>
#include <Export/StereoBuffer.h>
#include <Timeline/SlideshowTimeline.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <thread>
#include <vector>

namespace Player {

/// The music of a film as it is heard: from any time on, again and again, under the film's envelope, and
/// without a click where it starts, stops or jumps. It is decoded on a thread of its own; music that cannot
/// be played is silence. Any thread.
class MusicStream {
public:
    /// Stands at the film's beginning, silent until it is told to play. `plan` has the film's length.
    MusicStream(std::filesystem::path music, Timeline::AudioPlan plan);
    ~MusicStream();
    MusicStream(const MusicStream&) = delete;
    MusicStream& operator=(const MusicStream&) = delete;

    void setPlaying(bool isPlaying);
    /// Silent, but time goes on.
    void setMuted(bool isMuted);
    /// Goes on at a time of the film, in seconds.
    void seek(double time);
    /// Becomes silent within that many seconds, for good.
    void fadeOut(double seconds);

    /// Fills all of `out`, with silence where there is nothing else; what is not decoded in time is left out
    /// later, so that sound and picture stay together. Waits for nothing.
    void read(std::span<Export::StereoSample> out);
    /// How many samples could be read at once.
    [[nodiscard]] std::size_t available() const;

private:
    void run(const std::stop_token& stop);
    /// Decodes until the sample with that number of the film is next.
    void find(std::int64_t sample, const std::stop_token& stop);
    /// The next piece of the music that goes round; empty when there is no sound.
    [[nodiscard]] std::vector<Export::StereoSample> decode(const std::stop_token& stop);
    [[nodiscard]] bool hasSeekOrEnd(const std::stop_token& stop) const;
    [[nodiscard]] Export::StereoSample nextSample();

    std::filesystem::path m_music;
    Timeline::AudioPlan m_plan;

    mutable std::mutex m_mutex;
    std::condition_variable_any m_wake;
    std::deque<Export::StereoSample> m_ready;
    std::optional<std::int64_t> m_seek = 0;
    bool m_isPlaying = false;
    bool m_isMuted = false;
    bool m_isLeaving = false;
    /// How loud it is now, 0…1, and how fast that changes, a sample.
    float m_level = 0;
    float m_slope = 0;
    /// Samples that should have been heard already.
    std::size_t m_owed = 0;
    /// What is still heard of the place before the last jump, and how many samples of the new one are faded
    /// in yet.
    std::size_t m_tail = 0;
    std::size_t m_fadingIn = 0;

    /// The decoding thread's own.
    std::optional<Export::MusicPass> m_reader;
    std::vector<Export::StereoSample> m_piece;
    /// Samples decoded of the present pass, and of a whole one once that is known.
    std::int64_t m_position = 0;
    std::optional<std::int64_t> m_length;
    std::int64_t m_filmSample = 0;

    /// Last: it uses the others.
    std::jthread m_thread;
};

} // namespace Player
