// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/FrameSource.h>
#include <ProjectModel/Project.h>

#include <memory>

namespace Platform {

/// What draws the project's slideshow from this machine's photos, decoded to at most `maxPixel` pixels on
/// their longest side. A QGuiApplication must exist. Any thread.
[[nodiscard]] std::unique_ptr<Frames::FrameSource> slideshowFrames(const ProjectModel::Project& project,
                                                                   int maxPixel);

} // namespace Platform
