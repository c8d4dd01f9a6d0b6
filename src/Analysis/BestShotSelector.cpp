// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/BestShotSelector.h>

#include <map>
#include <vector>

namespace Analysis::BestShotSelector {

namespace {

/// The variance at which sharpness is one half.
constexpr double halfWayVariance = 1000;

} // namespace

double sharpness(std::optional<double> variance) {
    const double v = variance.value_or(0);
    return (v / halfWayVariance) / (v / halfWayVariance + 1);
}

double score(const QualityInputs& inputs) {
    return 0.5 * inputs.aesthetics + 0.3 * inputs.sharpness + (inputs.hasOpenEyedFace ? 0.2 : 0.0);
}

ClusterSelection selection(const std::unordered_map<Foundation::Uuid, Foundation::Uuid>& clusters,
                           const std::unordered_map<Foundation::Uuid, double>& scores) {
    const auto scoreOf = [&](const Foundation::Uuid& photo) {
        const auto found = scores.find(photo);
        return found == scores.end() ? 0.0 : found->second;
    };

    std::map<Foundation::Uuid, std::vector<Foundation::Uuid>> members;
    for (const auto& [photo, cluster] : clusters)
        members[cluster].push_back(photo);

    ClusterSelection result;
    for (const auto& [cluster, photos] : members) {
        Foundation::Uuid best = photos.front();
        for (const Foundation::Uuid& photo : photos) {
            const double challenger = scoreOf(photo);
            const double champion = scoreOf(best);
            // Identifiers are ordered like their texts.
            if (challenger > champion || (challenger == champion && photo > best))
                best = photo;
        }
        for (const Foundation::Uuid& photo : photos)
            (photo == best ? result.keep : result.drop).insert(photo);
    }
    return result;
}

} // namespace Analysis::BestShotSelector
