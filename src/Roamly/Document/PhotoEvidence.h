// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Why a photo is where it is said to be, and why it was taken into the film or left out: told from what the
/// project holds. Pure.
namespace Document {

/// "between Sintra 12 min before and Sintra 8 min after" for a place that neighbours in time gave, "from the
/// photo’s GPS position", "set by you"; empty without a place. Takes time in proportion to the photos.
[[nodiscard]] std::string placeEvidence(const ProjectModel::Project& project,
                                        const ProjectModel::PhotoItem& photo);

/// The photos of a near-duplicate group in the project's order; none when the photo is in no group.
[[nodiscard]] std::vector<ProjectModel::PhotoItem> groupOf(const ProjectModel::Project& project,
                                                           const Foundation::Uuid& photo);

/// How a photo does beside the others of its group.
struct Standing {
    std::size_t size = 0;
    /// From 1, the best; photos of one score share their place. Absent when not all were scored.
    std::optional<std::size_t> place;
    /// 0…100.
    std::optional<int> points;
    /// How far behind the best one, in points.
    int behind = 0;

    friend bool operator==(const Standing&, const Standing&) = default;
};

/// `group` holds the photo.
[[nodiscard]] Standing standing(const std::vector<ProjectModel::PhotoItem>& group,
                                const ProjectModel::PhotoItem& photo);

/// "Best of 5 similar shots", "3rd of 5 similar shots", "One of 5 similar shots, not compared yet".
[[nodiscard]] std::string placeInGroup(const Standing& standing);
/// "Quality 82 of 100", "Quality 78 of 100, 4 below the best"; empty when it has no score.
[[nodiscard]] std::string quality(const Standing& standing);

} // namespace Document
