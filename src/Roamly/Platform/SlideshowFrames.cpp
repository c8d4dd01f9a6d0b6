// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/AppImageProvider.h>
#include <Roamly/Platform/SlideshowFrames.h>
#include <Roamly/Slides/SlideshowFrameSource.h>

#include <cstddef>

namespace Platform {

namespace {

/// Photos kept decoded at a time: the two of a dissolve, and those that are being prepared.
constexpr std::size_t photoCacheLimit = 6;

} // namespace

std::unique_ptr<Frames::FrameSource> slideshowFrames(const ProjectModel::Project& project, int maxPixel) {
    return std::make_unique<Slides::SlideshowFrameSource>(
        project,
        [provider = AppImageProvider{maxPixel}](const ProjectModel::PhotoRef& ref) {
            return provider.image(ref);
        },
        photoCacheLimit);
}

} // namespace Platform
