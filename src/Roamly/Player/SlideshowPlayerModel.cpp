// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Player/SlideshowPlayerModel.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

namespace Player {

namespace {

std::vector<Timeline::PhotoSegment> photosOf(const Timeline::SlideshowTimeline& timeline) {
    std::vector<Timeline::PhotoSegment> photos;
    for (const Timeline::TimelineItem& item : timeline.items) {
        if (const auto* photo = std::get_if<Timeline::PhotoSegment>(&item))
            photos.push_back(*photo);
    }
    return photos;
}

} // namespace

SlideshowPlayerModel::SlideshowPlayerModel(Timeline::SlideshowTimeline timeline, double crossfade,
                                           std::function<void()> changed)
    : m_timeline(std::move(timeline))
    , m_photoSegments(photosOf(m_timeline))
    , m_crossfade(crossfade)
    , m_playhead(m_timeline, m_crossfade)
    , m_changed(std::move(changed)) {}

void SlideshowPlayerModel::changed() const {
    if (m_changed)
        m_changed();
}

void SlideshowPlayerModel::jumpTo(double time) {
    m_elapsed = time;
    if (m_onScrub)
        m_onScrub(time);
}

void SlideshowPlayerModel::togglePlay() {
    if (!m_isPlaying && m_elapsed >= m_timeline.totalDuration)
        jumpTo(0);
    m_isPlaying = !m_isPlaying;
    changed();
}

void SlideshowPlayerModel::tick(double dt) {
    if (!m_isPlaying)
        return;
    m_elapsed = std::min(m_timeline.totalDuration, m_elapsed + dt);
    if (m_elapsed >= m_timeline.totalDuration)
        m_isPlaying = false;
    changed();
}

std::optional<std::size_t> SlideshowPlayerModel::currentPhoto() const {
    for (std::size_t i = m_photoSegments.size(); i-- > 0;) {
        if (m_photoSegments[i].start <= m_elapsed)
            return i;
    }
    return std::nullopt;
}

void SlideshowPlayerModel::next() {
    const std::optional<std::size_t> current = currentPhoto();
    if (!current || *current + 1 >= m_photoSegments.size())
        return;
    jumpTo(m_photoSegments[*current + 1].start);
    changed();
}

void SlideshowPlayerModel::previous() {
    const std::optional<std::size_t> current = currentPhoto();
    if (!current || *current == 0)
        return;
    jumpTo(m_photoSegments[*current - 1].start);
    changed();
}

void SlideshowPlayerModel::seek(double time) {
    // What is no number at all counts as the beginning.
    jumpTo(time > 0 ? std::min(time, m_timeline.totalDuration) : 0);
    changed();
}

std::set<Foundation::Uuid> SlideshowPlayerModel::nearbyPhotoIDs() const {
    const std::optional<std::size_t> current = currentPhoto();
    if (!current)
        return {};
    std::set<Foundation::Uuid> ids;
    const std::size_t last = std::min(*current + 1, m_photoSegments.size() - 1);
    for (std::size_t i = *current == 0 ? 0 : *current - 1; i <= last; ++i)
        ids.insert(m_photoSegments[i].photoID);
    return ids;
}

std::optional<SlideshowPlayerModel::Frame> SlideshowPlayerModel::frame(double crossfade) const {
    const Timeline::RenderState state = crossfade == m_crossfade
                                            ? m_playhead.state(m_elapsed)
                                            : Timeline::Playhead{m_timeline, crossfade}.state(m_elapsed);
    const auto* photo = std::get_if<Timeline::PhotoState>(&state);
    if (!photo)
        return std::nullopt;
    Frame frame{.id = photo->current.photoID,
                .progress = photo->progress,
                .incomingID = {},
                .incomingProgress = photo->incomingProgress,
                .incomingOpacity = photo->incomingOpacity};
    if (photo->incoming)
        frame.incomingID = photo->incoming->photoID;
    return frame;
}

const Timeline::PhotoSegment* SlideshowPlayerModel::segment(const Foundation::Uuid& id) const {
    const auto found = std::ranges::find(m_photoSegments, id, &Timeline::PhotoSegment::photoID);
    return found == m_photoSegments.end() ? nullptr : &*found;
}

} // namespace Player
