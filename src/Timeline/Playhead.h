// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Timeline/RenderState.h>
#include <Timeline/SlideshowTimeline.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace Timeline {

/// Answers what must be on screen at a time. A value without a clock. Any thread.
class Playhead {
public:
    /// `crossfade` is the settings' value in seconds as it stands, not the one the builder may have
    /// shortened.
    Playhead(const SlideshowTimeline& timeline, double crossfade);

    /// `time` in seconds; any number. After the end the last photo stays; before the beginning there is
    /// nothing.
    [[nodiscard]] RenderState state(double time) const;

private:
    /// When a photo begins to be the last one that has begun.
    struct PhotoStart {
        double time;
        std::size_t segment;
    };

    [[nodiscard]] const ChapterSegment* chapterAt(double time) const;
    [[nodiscard]] std::optional<std::size_t> photoAt(double time) const;

    /// Without the empty ones, which no time falls into.
    std::vector<ChapterSegment> m_chapters;
    /// Each one ends before the next one starts, as in every timeline that the builder makes.
    bool m_chaptersAreInOrder = true;
    std::vector<PhotoSegment> m_photoSegments;
    /// Ascending in both members. A segment that starts no earlier than a later one is never the last one
    /// that has begun, so it is left out.
    std::vector<PhotoStart> m_photoStarts;
    double m_crossfade;
};

} // namespace Timeline
