// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Timeline/SlideshowTimeline.h>

#include <optional>
#include <variant>

namespace Timeline {

/// One photo, or a dissolve from `current` to `incoming`.
struct PhotoState {
    PhotoSegment current;
    /// 0…1 through the current segment.
    double progress = 0;
    std::optional<PhotoSegment> incoming;
    /// 0…1 through the incoming segment.
    double incomingProgress = 0;
    /// 0…1, how far the dissolve has come.
    double incomingOpacity = 0;

    friend bool operator==(const PhotoState&, const PhotoState&) = default;
};

/// Nothing to draw: black.
struct EmptyState {
    friend bool operator==(const EmptyState&, const EmptyState&) = default;
};

/// What is on screen at one instant.
using RenderState = std::variant<ChapterSegment, PhotoState, EmptyState>;

} // namespace Timeline
