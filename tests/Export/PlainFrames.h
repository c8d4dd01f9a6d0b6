// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/FrameSource.h>
#include <Timeline/SlideshowTimeline.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <set>
#include <variant>

/// Frames of one grey, whose luma grows from 40 to 200 with the progress of the one photo.
class PlainFrames : public Frames::FrameSource {
public:
    /// Called before each frame is made, with its progress; may throw or wait. False makes no frame.
    std::function<bool(double progress)> before;
    std::set<Foundation::Uuid> failed;
    std::atomic<int> calls = 0;

    std::shared_ptr<const Frames::YuvFrame> frame(const Timeline::RenderState& state,
                                                  Frames::FrameSize size) override {
        const double progress = std::get<Timeline::PhotoState>(state).progress;
        ++calls;
        if (before && !before(progress))
            return nullptr;
        auto frame = std::make_shared<Frames::YuvFrame>(size);
        for (int plane = 0; plane < 3; ++plane) {
            const int value = plane == 0 ? luma(progress) : 128;
            for (int y = 0; y < frame->planeHeight(plane); ++y)
                std::memset(frame->plane(plane) + y * frame->stride(plane), value,
                            static_cast<std::size_t>(frame->planeWidth(plane)));
        }
        return frame;
    }

    [[nodiscard]] std::set<Foundation::Uuid> failedPhotoIDs() const override { return failed; }

    [[nodiscard]] static int luma(double progress) {
        return static_cast<int>(std::lround(40 + 160 * progress));
    }
};

/// One photo for the whole time.
inline Timeline::SlideshowTimeline onePhoto(double duration) {
    Timeline::PhotoSegment photo;
    photo.duration = duration;
    return {{photo}, duration, std::nullopt};
}
