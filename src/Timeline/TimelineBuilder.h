// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>
#include <ProjectModel/Project.h>
#include <Timeline/EffectiveSettings.h>
#include <Timeline/SlideshowTimeline.h>

#include <optional>
#include <string>

namespace Timeline::TimelineBuilder {

/// Lays the selected photos out in time, in their stored order. Deterministic; never fails.
[[nodiscard]] SlideshowTimeline build(const ProjectModel::Project& project,
                                      const EffectiveSettings& settings);

/// "City, Country" from what is known of the photo's place; two photos are in the same place when their
/// labels are equal.
[[nodiscard]] std::optional<std::string> locationLabel(const ProjectModel::PhotoItem& photo);

[[nodiscard]] OverlaySpec overlay(const ProjectModel::PhotoItem& photo, bool captionsEnabled,
                                  const std::optional<std::string>& chapterTitle);

} // namespace Timeline::TimelineBuilder
