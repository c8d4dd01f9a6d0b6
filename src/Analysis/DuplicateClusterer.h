// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <Foundation/Uuid.h>

#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace Analysis {

/// One photo offered for clustering.
struct ClusterItem {
    Foundation::Uuid id;
    std::optional<Foundation::Instant> captureDate;
    /// The image's feature vector; all photos of one run have vectors of one length.
    std::vector<float> features;
};

/// Groups near-duplicate shots. Pure apart from the identifiers it asks for. Any thread.
namespace DuplicateClusterer {

/// Feature vectors are scaled so that shots of one scene are nearer than this to each other.
inline constexpr double defaultThreshold = 0.5;
/// Seconds.
inline constexpr double defaultTimeWindow = 600;

/// A single greedy pass over the items in capture order (undated first, ties in the order given): each item
/// joins the cluster whose last member is nearest to it, if that is strictly nearer than `threshold` and not
/// more than `timeWindow` seconds away; otherwise it opens a cluster. Between two last members at the same
/// distance the older cluster wins. An item or last member without a date is not tested for time; an item
/// without features, or with another number of them, matches nothing.
///
/// Yields the cluster of each item that has company; items that stayed alone are absent.
///
/// Takes time in proportion to the items times the clusters that are open at once: those whose last member
/// lies within the window or has no date.
[[nodiscard]] std::unordered_map<Foundation::Uuid, Foundation::Uuid>
cluster(std::span<const ClusterItem> items, double threshold, double timeWindow,
        const Foundation::UuidSource& newID = Foundation::Uuid::random);

/// The Euclidean distance; the largest finite double when either vector is empty or their lengths differ.
[[nodiscard]] double distance(std::span<const float> a, std::span<const float> b);

} // namespace DuplicateClusterer

} // namespace Analysis
