// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <ProjectModel/Project.h>
#include <ProjectModel/ResolvedLocation.h>

#include <optional>

namespace Analysis {

/// Gives photos without a place the city of their neighbours in time. Pure. Any thread.
namespace LocationInference {

/// The nearest photo before or after, in capture order, that has both a capture date and a location.
struct Neighbour {
    Foundation::Instant captureDate;
    ProjectModel::ResolvedLocation location;
};

/// Six hours, on either side.
inline constexpr double maxGapSeconds = 21'600;

/// The neighbours' city when both have the same one (compared letter by letter) and neither is more than
/// `maxGap` seconds away; with the earlier neighbour's country and provenance `inferred`.
[[nodiscard]] std::optional<ProjectModel::ResolvedLocation>
inferred(std::optional<Foundation::Instant> captureDate, const std::optional<Neighbour>& previous,
         const std::optional<Neighbour>& next, double maxGap);

/// Proposes an inferred location to every photo of the project that has none. Neighbours are what the project
/// held before the call: what is inferred for one photo is no evidence for another.
void infer(ProjectModel::Project& project);

} // namespace LocationInference

} // namespace Analysis
