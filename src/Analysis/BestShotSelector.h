// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>

#include <optional>
#include <set>
#include <unordered_map>

namespace Analysis {

/// What a photo's quality score is made of.
struct QualityInputs {
    /// 0…1.
    double aesthetics = 0;
    /// 0…1, see `BestShotSelector::sharpness`.
    double sharpness = 0;
    bool hasOpenEyedFace = false;
};

/// The verdict on the members of all clusters.
struct ClusterSelection {
    /// One photo of each cluster.
    std::set<Foundation::Uuid> keep;
    /// All its other members.
    std::set<Foundation::Uuid> drop;

    friend bool operator==(const ClusterSelection&, const ClusterSelection&) = default;
};

/// Chooses the photo to keep of each group of near-duplicates. Pure. Any thread.
namespace BestShotSelector {

/// The variance v of an image's Laplacian as v / (v + 1000), 0…1; an absent variance counts as 0.
[[nodiscard]] double sharpness(std::optional<double> variance);

/// The weights sum to 1: half aesthetics, three tenths sharpness, two tenths for a face with an eye to be
/// seen.
[[nodiscard]] double score(const QualityInputs& inputs);

/// Of each cluster the member with the highest score (0 when it has none); among equals the one whose
/// upper-case UUID text is greatest, so that the choice does not depend on the order of members. `clusters`
/// maps photos to clusters, `scores` photos to scores.
[[nodiscard]] ClusterSelection
selection(const std::unordered_map<Foundation::Uuid, Foundation::Uuid>& clusters,
          const std::unordered_map<Foundation::Uuid, double>& scores);

} // namespace BestShotSelector

} // namespace Analysis
