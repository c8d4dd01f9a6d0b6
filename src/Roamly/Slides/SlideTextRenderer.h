// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/Compositor.h>
#include <Timeline/SlideshowTimeline.h>

#include <string_view>
#include <vector>

namespace Slides {

/// Draws the texts of a slideshow into bitmaps, at sizes that are the same in pixels for every frame size.
/// What does not fit inside the frame's margins is wrapped, then cut short. The bitmaps are cropped to what
/// is drawn in them and come in the order in which they are to be laid over the frame.
///
/// Thread-safe and deterministic. A QGuiApplication must exist (any platform plugin, also "offscreen").
namespace SlideTextRenderer {

/// The texts over a photo and the shades behind them. The bottom shade is always there.
[[nodiscard]] std::vector<Frames::OverlayBitmap> overlay(const Timeline::OverlaySpec& spec,
                                                         Frames::FrameSize frame);

/// The title of a chapter card, to be laid over black.
[[nodiscard]] std::vector<Frames::OverlayBitmap> chapterCard(std::string_view title, Frames::FrameSize frame);

} // namespace SlideTextRenderer

} // namespace Slides
