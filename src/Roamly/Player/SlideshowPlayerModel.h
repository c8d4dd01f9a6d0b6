// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Timeline/Playhead.h>
#include <Timeline/SlideshowTimeline.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace Player {

/// Where a slideshow stands and how it moves on: what the controls of a player act on and its picture is
/// drawn from. It has no clock of its own. Owner's thread.
class SlideshowPlayerModel {
public:
    /// What is drawn while photos are on screen.
    struct Frame {
        Foundation::Uuid id;
        /// 0…1.
        double progress = 0;
        std::optional<Foundation::Uuid> incomingID;
        /// 0…1 both.
        double incomingProgress = 0;
        double incomingOpacity = 0;

        friend bool operator==(const Frame&, const Frame&) = default;
    };

    /// Starts paused at 0. `crossfade` in seconds, as the settings have it. `changed` is called after each
    /// change of `isPlaying` or `elapsed`.
    SlideshowPlayerModel(Timeline::SlideshowTimeline timeline, double crossfade,
                         std::function<void()> changed = {});

    [[nodiscard]] const Timeline::SlideshowTimeline& timeline() const { return m_timeline; }
    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }
    /// Seconds from the beginning, at most the total duration.
    [[nodiscard]] double elapsed() const { return m_elapsed; }
    [[nodiscard]] const std::vector<Timeline::PhotoSegment>& photoSegments() const { return m_photoSegments; }

    /// Called with the new `elapsed` at each jump, so that the music can follow; never by the passing of
    /// time.
    void onScrub(std::function<void(double)> action) { m_onScrub = std::move(action); }

    /// Plays or pauses; a slideshow that has ended begins again.
    void togglePlay();
    /// Time has passed, in seconds. Stops playing at the end; nothing happens while paused.
    void tick(double dt);
    /// To the next photo; nothing on the last one and during an opening card.
    void next();
    /// To the beginning of the photo before the present one, never of the present one; nothing on the first
    /// photo and during an opening card.
    void previous();
    /// To a time within the slideshow; others are taken for its beginning or end.
    void seek(double time);

    /// The present photo and its neighbours, which are worth having ready; none during an opening card.
    [[nodiscard]] std::set<Foundation::Uuid> nearbyPhotoIDs() const;
    /// The photos on screen; nothing while a card or nothing is.
    [[nodiscard]] std::optional<Frame> frame(double crossfade) const;
    /// The first segment of the photo; nothing when it is not in the slideshow. Valid as long as the model.
    [[nodiscard]] const Timeline::PhotoSegment* segment(const Foundation::Uuid& id) const;

    /// Everything that is on screen now.
    [[nodiscard]] Timeline::RenderState state() const { return m_playhead.state(m_elapsed); }

private:
    [[nodiscard]] std::optional<std::size_t> currentPhoto() const;
    void jumpTo(double time);
    void changed() const;

    Timeline::SlideshowTimeline m_timeline;
    bool m_isPlaying = false;
    double m_elapsed = 0;
    std::function<void(double)> m_onScrub;
    std::vector<Timeline::PhotoSegment> m_photoSegments;
    double m_crossfade;
    Timeline::Playhead m_playhead;
    std::function<void()> m_changed;
};

} // namespace Player
