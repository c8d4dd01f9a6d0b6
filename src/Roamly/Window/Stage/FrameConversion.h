// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/YuvFrame.h>

#include <QImage>

namespace Stage {

/// The frame as the screen takes it (RGB32), chroma interpolated; at most 2 levels from Frames::toImage, and
/// several times as fast. Any thread.
[[nodiscard]] QImage toScreen(const Frames::YuvFrame& frame);

} // namespace Stage
