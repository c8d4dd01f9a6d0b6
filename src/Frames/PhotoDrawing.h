// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/Compositor.h>
#include <Frames/YuvFrame.h>

namespace Frames {

/// Draws one photo on a frame whose contents are undefined; what the photo does not cover becomes black.
void drawOverBlack(const PhotoLayer& layer, YuvFrame& frame);

/// Draws one photo over what the frame shows.
void drawOver(const PhotoLayer& layer, YuvFrame& frame);

} // namespace Frames
