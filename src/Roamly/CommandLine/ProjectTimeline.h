// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>
#include <Timeline/EffectiveSettings.h>
#include <Timeline/SlideshowTimeline.h>

#include <filesystem>

namespace CommandLine {

/// A project and the slideshow it makes with the settings in effect.
struct ProjectTimeline {
    ProjectModel::Project project;
    Timeline::EffectiveSettings settings;
    Timeline::SlideshowTimeline timeline;
};

/// Throws ProjectStoreError.
[[nodiscard]] ProjectTimeline loadTimeline(const std::filesystem::path& projectFile);

} // namespace CommandLine
