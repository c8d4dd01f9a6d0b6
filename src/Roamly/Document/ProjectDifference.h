// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Document {

/// A value that is another one afterwards.
template <typename Value>
struct Replaced {
    Value before;
    Value after;

    friend bool operator==(const Replaced&, const Replaced&) = default;
};

/// What differs between two projects: enough to come from either to the other, told as a list view follows
/// it: first the removed photos go, then those that stay take their new order, then the inserted ones come,
/// and last the changed ones have new values. A plain value.
struct ProjectDifference {
    struct PlacedPhoto {
        std::size_t position;
        ProjectModel::PhotoItem photo;

        friend bool operator==(const PlacedPhoto&, const PlacedPhoto&) = default;
    };
    struct ChangedPhoto {
        std::size_t position;
        ProjectModel::PhotoItem before;
        ProjectModel::PhotoItem after;

        friend bool operator==(const ChangedPhoto&, const ChangedPhoto&) = default;
    };

    // Members of the project that are the same in both are absent.
    std::optional<Replaced<ProjectModel::ProjectSettings>> settings;
    std::optional<Replaced<std::optional<ProjectModel::MusicSelection>>> music;
    std::optional<Replaced<std::vector<ProjectModel::PhotoSource>>> sources;
    std::optional<Replaced<bool>> usesManualOrder;
    std::optional<Replaced<std::int64_t>> schemaVersion;

    /// By their positions before, ascending.
    std::vector<PlacedPhoto> removed;
    /// Counting only photos that stay: the one that stood at order[i] stands at i. Empty when they keep their
    /// order.
    std::vector<std::size_t> order;
    /// By their positions afterwards, ascending.
    std::vector<PlacedPhoto> inserted;
    /// By their positions afterwards, ascending.
    std::vector<ChangedPhoto> changed;

    [[nodiscard]] bool isEmpty() const;
    /// The memory it takes, with what its members hold on the heap.
    [[nodiscard]] std::size_t bytes() const;

    friend bool operator==(const ProjectDifference&, const ProjectDifference&) = default;
};

/// Photos are the same when their ids are; of photos with equal ids the first goes with the first, the second
/// with the second. Takes time in proportion to the photos.
[[nodiscard]] ProjectDifference difference(const ProjectModel::Project& before,
                                           const ProjectModel::Project& after);

/// The way back.
[[nodiscard]] ProjectDifference inverted(ProjectDifference difference);

/// Makes the project that was `before` the one that was `after`; another project is a caller's error.
void apply(const ProjectDifference& difference, ProjectModel::Project& project);
/// Makes the project that was `after` the one that was `before`.
void revert(const ProjectDifference& difference, ProjectModel::Project& project);

} // namespace Document
