// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Timeline/SlideshowTimeline.h>

#include <filesystem>
#include <memory>

namespace Player {

/// Plays a film's music on this machine's default sound device. Without a device there is silence, and one
/// that comes later is taken. Owner's thread, which needs an event loop of Qt's.
class AudioPlayerController {
public:
    /// How long leaving the player may be heard, in seconds.
    static constexpr double leavingFade = 0.5;

    /// Stands at the film's beginning.
    AudioPlayerController(const std::filesystem::path& music, const Timeline::AudioPlan& plan);
    /// Ends at once.
    ~AudioPlayerController();
    AudioPlayerController(const AudioPlayerController&) = delete;
    AudioPlayerController& operator=(const AudioPlayerController&) = delete;

    /// The film goes on at `time`, in seconds.
    void play(double time);
    void pause();
    void setMuted(bool isMuted);
    /// The film jumped there, in seconds, playing or not.
    void scrub(double time);
    /// Fades the music out, for good. What the device holds already is heard before: it is silent `latency`
    /// after the fade.
    void stop(double fade = leavingFade);
    /// From here to the ear, in seconds.
    [[nodiscard]] double latency() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace Player
