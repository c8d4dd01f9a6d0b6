#pragma once

#include <Timeline/RenderState.h>
#include <Timeline/SlideshowTimeline.h>

#include <vector>

namespace Timeline {

/// Answers what must be on screen at a time. A value without a clock; safe to use from any thread.
class Playhead {
public:
    /// `crossfade` is the settings' value in seconds as it stands, not the one the builder may have shortened.
    Playhead(const SlideshowTimeline& timeline, double crossfade);

    /// `time` in seconds; any number. After the end the last photo stays; before the beginning there is nothing.
    [[nodiscard]] RenderState state(double time) const;

private:
    std::vector<TimelineItem> m_items;
    std::vector<PhotoSegment> m_photoSegments;
    double m_crossfade;
};

} // namespace Timeline
