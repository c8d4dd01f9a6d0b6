// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Timeline/Playhead.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Timeline {

namespace {

double endOf(const ChapterSegment& chapter) {
    return chapter.start + chapter.duration;
}

bool contains(const ChapterSegment& chapter, double time) {
    return chapter.start <= time && time < endOf(chapter);
}

/// `elapsed` as a fraction of `duration`, within 0…1; `fallback` where there is no duration to divide by.
double fraction(double elapsed, double duration, double fallback) {
    return duration > 0 ? std::clamp(elapsed / duration, 0.0, 1.0) : fallback;
}

} // namespace

Playhead::Playhead(const SlideshowTimeline& timeline, double crossfade)
    : m_crossfade(crossfade) {
    for (const TimelineItem& item : timeline.items) {
        if (const auto* photo = std::get_if<PhotoSegment>(&item))
            m_photoSegments.push_back(*photo);
        else if (const auto& chapter = std::get<ChapterSegment>(item); chapter.start < endOf(chapter))
            m_chapters.push_back(chapter);
    }
    const auto reachesInto = [](const ChapterSegment& a, const ChapterSegment& b) {
        return !(endOf(a) <= b.start);
    };
    m_chaptersAreInOrder =
        std::adjacent_find(m_chapters.begin(), m_chapters.end(), reachesInto) == m_chapters.end();

    for (std::size_t i = m_photoSegments.size(); i-- > 0;) {
        const double start = m_photoSegments[i].start;
        if (m_photoStarts.empty() ? !std::isnan(start) : start < m_photoStarts.back().time)
            m_photoStarts.push_back({.time = start, .segment = i});
    }
    std::reverse(m_photoStarts.begin(), m_photoStarts.end());
}

const ChapterSegment* Playhead::chapterAt(double time) const {
    const auto holdsTime = [time](const ChapterSegment& chapter) { return contains(chapter, time); };
    if (!m_chaptersAreInOrder) {
        const auto found = std::find_if(m_chapters.begin(), m_chapters.end(), holdsTime);
        return found == m_chapters.end() ? nullptr : &*found;
    }
    const auto next =
        std::partition_point(m_chapters.begin(), m_chapters.end(),
                             [time](const ChapterSegment& chapter) { return chapter.start <= time; });
    return next != m_chapters.begin() && holdsTime(*std::prev(next)) ? &*std::prev(next) : nullptr;
}

std::optional<std::size_t> Playhead::photoAt(double time) const {
    const auto next = std::partition_point(m_photoStarts.begin(), m_photoStarts.end(),
                                           [time](const PhotoStart& start) { return start.time <= time; });
    return next == m_photoStarts.begin() ? std::nullopt : std::optional{std::prev(next)->segment};
}

RenderState Playhead::state(double time) const {
    if (const ChapterSegment* chapter = chapterAt(time))
        return *chapter;
    const std::optional<std::size_t> index = photoAt(time);
    if (!index)
        return EmptyState{};
    const PhotoSegment& segment = m_photoSegments[*index];
    const double local = time - segment.start;
    if (*index >= 1 && segment.crossfadesFromPrevious && local < m_crossfade) {
        const PhotoSegment& previous = m_photoSegments[*index - 1];
        return PhotoState{.current = previous,
                          // The photo that is left counts as finished.
                          .progress = fraction(time - previous.start, previous.duration, 1),
                          .incoming = segment,
                          .incomingProgress = fraction(local, segment.duration, 0),
                          .incomingOpacity = fraction(local, m_crossfade, 1)};
    }
    return PhotoState{.current = segment,
                      .progress = fraction(local, segment.duration, 0),
                      .incoming = std::nullopt,
                      .incomingProgress = 0,
                      .incomingOpacity = 0};
}

} // namespace Timeline
