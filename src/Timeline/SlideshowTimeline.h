// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bytes.h>
#include <Foundation/Uuid.h>
#include <Timeline/KenBurns.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Timeline {

/// The texts drawn over a photo.
struct OverlaySpec {
    std::optional<std::string> locationText;
    /// The place was guessed from photos taken around the same time.
    bool isApproximate = false;
    std::optional<std::string> caption;
    std::optional<std::string> chapterTitle;

    friend bool operator==(const OverlaySpec&, const OverlaySpec&) = default;
};

/// Times are seconds from the beginning of the slideshow.
struct PhotoSegment {
    Foundation::Uuid photoID;
    double start = 0;
    double duration = 0;
    bool crossfadesFromPrevious = false;
    std::optional<KenBurnsTransform> kenBurns;
    OverlaySpec overlay;

    friend bool operator==(const PhotoSegment&, const PhotoSegment&) = default;
};

/// A title card.
struct ChapterSegment {
    std::string title;
    double start = 0;
    double duration = 0;

    friend bool operator==(const ChapterSegment&, const ChapterSegment&) = default;
};

using TimelineItem = std::variant<PhotoSegment, ChapterSegment>;

/// The music and its envelope.
struct AudioPlan {
    Foundation::Bytes musicBookmark;
    double totalDuration = 0;
    double fadeIn = 0;
    double fadeOut = 0;

    friend bool operator==(const AudioPlan&, const AudioPlan&) = default;
};

/// A slideshow laid out in time: what the player plays and the export writes.
struct SlideshowTimeline {
    /// In play order.
    std::vector<TimelineItem> items;
    double totalDuration = 0;
    std::optional<AudioPlan> audio;

    friend bool operator==(const SlideshowTimeline&, const SlideshowTimeline&) = default;
};

} // namespace Timeline
