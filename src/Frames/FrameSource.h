// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Frames/FrameSize.h>
#include <Frames/YuvFrame.h>
#include <Timeline/RenderState.h>

#include <memory>
#include <set>

namespace Frames {

/// Where the exporter gets its frames. Asked for frames in nearly ascending order. Worker's thread.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// The finished frame, or nothing when it cannot be made. The same object may be returned for several
    /// frames that look the same.
    [[nodiscard]] virtual std::shared_ptr<const YuvFrame> frame(const Timeline::RenderState& state,
                                                                FrameSize size) = 0;

    /// The photos that could not be loaded or drawn so far.
    [[nodiscard]] virtual std::set<Foundation::Uuid> failedPhotoIDs() const = 0;
};

} // namespace Frames
