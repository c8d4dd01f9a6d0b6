// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/LocationInference.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace Analysis::LocationInference {

namespace {

double secondsBetween(Foundation::Instant earlier, Foundation::Instant later) {
    return static_cast<double>((later - earlier).count());
}

std::optional<Neighbour> asNeighbour(const ProjectModel::PhotoItem& photo) {
    if (!photo.captureDate || !photo.location)
        return std::nullopt;
    return Neighbour{*photo.captureDate, *photo.location};
}

} // namespace

std::optional<ProjectModel::ResolvedLocation> inferred(std::optional<Foundation::Instant> captureDate,
                                                       const std::optional<Neighbour>& previous,
                                                       const std::optional<Neighbour>& next, double maxGap) {
    if (!captureDate || !previous || !next)
        return std::nullopt;
    if (!(secondsBetween(previous->captureDate, *captureDate) <= maxGap) ||
        !(secondsBetween(*captureDate, next->captureDate) <= maxGap))
        return std::nullopt;
    if (!previous->location.city || next->location.city != previous->location.city)
        return std::nullopt;
    return ProjectModel::ResolvedLocation{previous->location.city, previous->location.country,
                                          ProjectModel::Provenance::inferred};
}

void infer(ProjectModel::Project& project) {
    std::vector<ProjectModel::PhotoItem> sorted = project.photos;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.captureDate < b.captureDate; });

    // The next neighbour of every position, found in one walk from the end.
    std::vector<std::optional<std::size_t>> nextLocated(sorted.size());
    std::optional<std::size_t> following;
    for (std::size_t i = sorted.size(); i-- > 0;) {
        nextLocated[i] = following;
        if (asNeighbour(sorted[i]))
            following = i;
    }

    std::vector<ProjectModel::ProposedLocation> proposals;
    std::optional<Neighbour> previous;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (auto neighbour = asNeighbour(sorted[i]))
            previous = std::move(neighbour);
        if (sorted[i].location)
            continue;
        const std::optional<Neighbour> next =
            nextLocated[i] ? asNeighbour(sorted[*nextLocated[i]]) : std::nullopt;
        if (auto location = inferred(sorted[i].captureDate, previous, next, maxGapSeconds))
            proposals.push_back({sorted[i].id, *std::move(location)});
    }
    project.applyProposedLocations(proposals);
}

} // namespace Analysis::LocationInference
