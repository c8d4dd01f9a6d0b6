// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Frames/FrameSource.h>
#include <ProjectModel/Project.h>
#include <Timeline/SlideshowTimeline.h>

#include <functional>
#include <memory>
#include <optional>

namespace Slides {

/// Draws the frames of a slideshow: black, the photo or the two photos of a dissolve in motion, the texts, or
/// a chapter card. Thread-safe. A QGuiApplication must exist (any platform plugin, also "offscreen").
class SlideshowFrameSource : public Frames::FrameSource {
public:
    /// Loads a photo at the bound that suits the export; nothing when it cannot be loaded.
    using PhotoLoader = std::function<std::optional<Foundation::Image>(const ProjectModel::PhotoRef&)>;

    /// `cacheLimit` photos at the most are kept decoded. A photo that fails once is not tried again.
    SlideshowFrameSource(const ProjectModel::Project& project, PhotoLoader loadPhoto,
                         std::size_t cacheLimit = 6);
    ~SlideshowFrameSource() override;

    [[nodiscard]] std::shared_ptr<const Frames::YuvFrame> frame(const Timeline::RenderState& state,
                                                                Frames::FrameSize size) override;
    [[nodiscard]] std::set<Foundation::Uuid> failedPhotoIDs() const override;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace Slides
