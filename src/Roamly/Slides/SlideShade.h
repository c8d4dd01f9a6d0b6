// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/Compositor.h>

namespace Slides {

/// The darkening that makes white text legible on any photo: black whose opacity runs linearly from clear at
/// the frame's vertical centre to its full strength at the edge. The steps between the 8-bit opacities are
/// dithered, so that a bright sky shows no bands.
namespace SlideShade {

inline constexpr double bottomOpacity = 0.50;
inline constexpr double topOpacity = 0.55;

/// Covers the lower half of the frame, strongest at the bottom edge.
[[nodiscard]] Frames::OverlayBitmap bottom(Frames::FrameSize frame);
/// Covers the upper half of the frame, strongest at the top edge.
[[nodiscard]] Frames::OverlayBitmap top(Frames::FrameSize frame);

} // namespace SlideShade

/// Rounds `value` (0…255) up or down by the position on the frame, so that an area's mean is the value
/// itself.
[[nodiscard]] std::uint8_t dithered(double value, int x, int y);

} // namespace Slides
