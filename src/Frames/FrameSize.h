// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Frames {

/// A frame's size in pixels.
struct FrameSize {
    int width = 0;
    int height = 0;

    friend bool operator==(const FrameSize&, const FrameSize&) = default;
};

} // namespace Frames
