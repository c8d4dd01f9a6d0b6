// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/MusicReader.h>
#include <Export/StereoBuffer.h>
#include <Timeline/SlideshowTimeline.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <vector>

namespace Export {

/// The music of a slideshow: the file from its beginning, again and again, under the plan's envelope, until
/// the slideshow's end is reached. The last buffer is not cut.
class Soundtrack {
public:
    /// Opens nothing yet.
    Soundtrack(std::filesystem::path music, Timeline::AudioPlan plan, std::stop_token stop);

    /// The next samples; false when the end was reached. Throws ExportError: appendFailed when the file has
    /// no sound (also later, when it was taken away), cancelled.
    [[nodiscard]] bool next(StereoBuffer& buffer);

    /// Where the next buffer begins, in seconds.
    [[nodiscard]] double position() const { return static_cast<double>(m_position) / audioSampleRate; }

private:
    void readMore();

    std::filesystem::path m_music;
    Timeline::AudioPlan m_plan;
    std::stop_token m_stop;
    std::optional<MusicReader> m_reader;
    /// Samples read and not handed out yet, from `m_taken` on.
    std::vector<StereoSample> m_samples;
    std::size_t m_taken = 0;
    /// Samples of the present pass over the file.
    std::size_t m_passLength = 0;
    /// What the first pass gave, as long as that is little; a jingle is decoded once, not a thousand times.
    std::vector<StereoSample> m_kept;
    bool m_isKeeping = true;
    bool m_isKept = false;
    std::int64_t m_position = 0;
};

} // namespace Export
