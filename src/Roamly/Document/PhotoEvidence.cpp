// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/PhotoEvidence.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <string_view>

namespace Document {

using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;

namespace {

/// "40 s", "12 min", "3 h 5 min".
std::string span(std::chrono::seconds length) {
    const auto seconds = length.count();
    if (seconds < 60)
        return std::to_string(seconds) + " s";
    const auto minutes = (seconds + 30) / 60;
    if (minutes < 60)
        return std::to_string(minutes) + " min";
    const std::string hours = std::to_string(minutes / 60) + " h";
    return minutes % 60 == 0 ? hours : hours + " " + std::to_string(minutes % 60) + " min";
}

/// Another photo that may have given the photo its place: what was inferred itself is no evidence.
bool mayHaveGivenPlace(const PhotoItem& other, const PhotoItem& photo) {
    return other.id != photo.id && other.captureDate && other.location && other.location->city &&
           other.location->provenance != Provenance::inferred;
}

std::string neighboursOf(const Project& project, const PhotoItem& photo) {
    const PhotoItem* before = nullptr;
    const PhotoItem* after = nullptr;
    bool isBeforeInList = true;
    for (const PhotoItem& other : project.photos) {
        if (other.id == photo.id)
            isBeforeInList = false;
        if (!photo.captureDate || !mayHaveGivenPlace(other, photo))
            continue;
        // Photos of one second stand in the list's order.
        const bool isEarlier = other.captureDate < photo.captureDate ||
                               (other.captureDate == photo.captureDate && isBeforeInList);
        if (isEarlier && (before == nullptr || other.captureDate >= before->captureDate))
            before = &other;
        if (!isEarlier && (after == nullptr || other.captureDate < after->captureDate))
            after = &other;
    }
    // Places may have been changed since.
    if (before == nullptr || after == nullptr || before->location->city != photo.location->city ||
        after->location->city != photo.location->city)
        return "from photos taken about the same time";
    return "between " + *before->location->city + " " + span(*photo.captureDate - *before->captureDate) +
           " before and " + *after->location->city + " " + span(*after->captureDate - *photo.captureDate) +
           " after";
}

std::optional<int> pointsOf(const PhotoItem& photo) {
    if (!photo.qualityScore)
        return std::nullopt;
    return static_cast<int>(std::lround(std::clamp(*photo.qualityScore, 0.0, 1.0) * 100));
}

std::string ordinal(std::size_t number) {
    const std::size_t last = number % 10;
    const bool isTeen = number % 100 / 10 == 1;
    const std::string_view ending = isTeen      ? "th"
                                    : last == 1 ? "st"
                                    : last == 2 ? "nd"
                                    : last == 3 ? "rd"
                                                : "th";
    return std::to_string(number) + std::string{ending};
}

} // namespace

std::string placeEvidence(const Project& project, const PhotoItem& photo) {
    if (!photo.location || (!photo.location->city && !photo.location->country))
        return {};
    switch (photo.location->provenance) {
    case Provenance::geocoded:
        return "from the photo’s GPS position";
    case Provenance::inferred:
        return neighboursOf(project, photo);
    case Provenance::user:
        return "set by you";
    case Provenance::proposed:
    case Provenance::generated:
        return {};
    }
    return {};
}

std::vector<PhotoItem> groupOf(const Project& project, const Foundation::Uuid& photo) {
    const auto found = std::ranges::find(project.photos, photo, &PhotoItem::id);
    std::vector<PhotoItem> group;
    if (found == project.photos.end() || !found->clusterID)
        return group;
    std::ranges::copy_if(project.photos, std::back_inserter(group),
                         [&](const PhotoItem& other) { return other.clusterID == found->clusterID; });
    return group;
}

Standing standing(const std::vector<PhotoItem>& group, const PhotoItem& photo) {
    Standing result{.size = group.size(), .place = std::nullopt, .points = pointsOf(photo), .behind = 0};
    if (!photo.qualityScore)
        return result;
    std::size_t place = 1;
    int best = 0;
    bool areAllScored = true;
    for (const PhotoItem& other : group) {
        areAllScored &= other.qualityScore.has_value();
        place += other.qualityScore > photo.qualityScore ? 1 : 0;
        best = std::max(best, pointsOf(other).value_or(0));
    }
    if (areAllScored) {
        result.place = place;
        result.behind = best - *result.points;
    }
    return result;
}

std::string placeInGroup(const Standing& standing) {
    const std::string shots = " of " + std::to_string(standing.size) + " similar shots";
    if (!standing.place)
        return "One" + shots + ", not compared yet";
    return (*standing.place == 1 ? "Best" : ordinal(*standing.place)) + shots;
}

std::string quality(const Standing& standing) {
    if (!standing.points)
        return {};
    const std::string points = "Quality " + std::to_string(*standing.points) + " of 100";
    return standing.behind > 0 ? points + ", " + std::to_string(standing.behind) + " below the best" : points;
}

} // namespace Document
