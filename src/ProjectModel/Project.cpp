// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/PhotoIndex.h>
#include <ProjectModel/Project.h>
#include <ProjectModel/ReviewOps.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace ProjectModel {

namespace {

// The rules of each operation, for a photo that was found.

void proposeLocation(PhotoItem& photo, const ResolvedLocation& location) {
    if (!photo.location || photo.location->provenance != Provenance::user)
        photo.location = location;
}

void proposeSelection(PhotoItem& photo, bool isSelected, const std::optional<Foundation::Uuid>& clusterID,
                      const std::optional<double>& qualityScore) {
    photo.clusterID = clusterID;
    photo.qualityScore = qualityScore;
    if (photo.selectionProvenance != Provenance::user)
        photo.isSelected = isSelected;
}

void setGenerated(PhotoItem& photo, const std::string& caption) {
    photo.caption = caption;
    photo.captionProvenance = Provenance::generated;
}

void setLocation(PhotoItem& photo, const std::optional<ResolvedLocation>& location) {
    photo.location = location;
    if (photo.location)
        photo.location->provenance = Provenance::user;
}

void setSelection(PhotoItem& photo, bool isSelected) {
    photo.isSelected = isSelected;
    photo.selectionProvenance = Provenance::user;
}

/// Calls `change` with the first photo of each id, in the order of the ids.
template <typename Change>
void changeEach(std::vector<PhotoItem>& photos, const std::set<Foundation::Uuid>& ids, const Change& change) {
    const PhotoIndex index{photos};
    for (const Foundation::Uuid& id : ids) {
        if (const std::optional<std::size_t> position = index.find(id))
            change(photos[*position]);
    }
}

PhotoItem* findPhoto(std::vector<PhotoItem>& photos, const Foundation::Uuid& id) {
    const auto found =
        std::find_if(photos.begin(), photos.end(), [&](const auto& photo) { return photo.id == id; });
    return found == photos.end() ? nullptr : &*found;
}

bool isTakenBefore(const PhotoItem& a, const PhotoItem& b) {
    if (a.captureDate && b.captureDate)
        return *a.captureDate < *b.captureDate;
    return a.captureDate.has_value() && !b.captureDate.has_value();
}

} // namespace

void Project::applyProposedLocation(const ResolvedLocation& location, const Foundation::Uuid& id) {
    if (PhotoItem* photo = findPhoto(photos, id))
        proposeLocation(*photo, location);
}

void Project::applyProposedSelection(bool isSelected, std::optional<Foundation::Uuid> clusterID,
                                     std::optional<double> qualityScore, const Foundation::Uuid& id) {
    if (PhotoItem* photo = findPhoto(photos, id))
        proposeSelection(*photo, isSelected, clusterID, qualityScore);
}

void Project::applyProposedLocations(const std::vector<ProposedLocation>& proposals) {
    const PhotoIndex index{photos};
    for (const ProposedLocation& proposal : proposals) {
        if (const std::optional<std::size_t> position = index.find(proposal.id))
            proposeLocation(photos[*position], proposal.location);
    }
}

void Project::applyProposedSelections(const std::vector<ProposedSelection>& proposals) {
    const PhotoIndex index{photos};
    for (const ProposedSelection& proposal : proposals) {
        if (const std::optional<std::size_t> position = index.find(proposal.id))
            proposeSelection(photos[*position], proposal.isSelected, proposal.clusterID,
                             proposal.qualityScore);
    }
}

void Project::applyAnalysis(const Project& analysed) {
    const PhotoIndex found{analysed.photos};
    std::unordered_set<Foundation::Uuid> seen;
    for (PhotoItem& photo : photos) {
        // The operations reach the first photo of an id only.
        if (!seen.insert(photo.id).second)
            continue;
        const std::optional<std::size_t> position = found.find(photo.id);
        if (!position)
            continue;
        const PhotoItem& result = analysed.photos[*position];
        if (result.location)
            proposeLocation(photo, *result.location);
        proposeSelection(photo, result.isSelected, result.clusterID, result.qualityScore);
    }
}

void Project::applyGeneratedCaption(const std::string& caption, const Foundation::Uuid& id) {
    PhotoItem* photo = findPhoto(photos, id);
    if (photo && photo->captionProvenance != Provenance::user)
        setGenerated(*photo, caption);
}

void Project::applyGeneratedCaptions(const std::map<Foundation::Uuid, std::string>& captions) {
    const PhotoIndex index{photos};
    for (const auto& [id, caption] : captions) {
        const std::optional<std::size_t> position = index.find(id);
        if (position && photos[*position].captionProvenance != Provenance::user)
            setGenerated(photos[*position], caption);
    }
}

void Project::setGeneratedCaption(const std::string& caption, const Foundation::Uuid& id) {
    if (PhotoItem* photo = findPhoto(photos, id))
        setGenerated(*photo, caption);
}

void Project::userSetLocation(const std::optional<ResolvedLocation>& location, const Foundation::Uuid& id) {
    if (PhotoItem* photo = findPhoto(photos, id))
        setLocation(*photo, location);
}

void Project::userSetLocations(const std::optional<ResolvedLocation>& location,
                               const std::set<Foundation::Uuid>& ids) {
    changeEach(photos, ids, [&](PhotoItem& photo) { setLocation(photo, location); });
}

void Project::userSetCaption(const std::optional<std::string>& caption, const Foundation::Uuid& id) {
    PhotoItem* photo = findPhoto(photos, id);
    if (!photo)
        return;
    photo->caption = caption;
    photo->captionProvenance = caption ? std::optional{Provenance::user} : std::nullopt;
}

void Project::userSetSelection(bool isSelected, const Foundation::Uuid& id) {
    if (PhotoItem* photo = findPhoto(photos, id))
        setSelection(*photo, isSelected);
}

void Project::userSetSelections(bool isSelected, const std::set<Foundation::Uuid>& ids) {
    changeEach(photos, ids, [&](PhotoItem& photo) { setSelection(photo, isSelected); });
}

void Project::userMovePhotos(const std::set<std::size_t>& positions, std::size_t destination) {
    ReviewOps::move(photos, positions, destination);
    markManuallyOrdered();
}

void Project::userSortByDate() {
    usesManualOrder = false;
    applyChronologicalOrder();
}

void Project::resetAnalysisSelection() {
    for (PhotoItem& photo : photos) {
        photo.isSelected = true;
        photo.selectionProvenance = Provenance::proposed;
        photo.clusterID.reset();
        photo.qualityScore.reset();
    }
}

void Project::removePhotos(const std::set<Foundation::Uuid>& ids) {
    std::erase_if(photos, [&](const PhotoItem& photo) { return ids.contains(photo.id); });
}

void Project::removeSource(const Foundation::Uuid& id) {
    // The argument may be the id inside one of the records that are about to move or go.
    const Foundation::Uuid removed = id;
    std::erase_if(photos, [&](const PhotoItem& photo) { return photo.sourceID == removed; });
    std::erase_if(sources, [&](const PhotoSource& source) { return source.id == removed; });
}

void Project::mergeImportedPhotos(const std::vector<PhotoItem>& incoming, const IdentityKeys& identityKeys) {
    const auto keyOf = [&](const PhotoItem& photo) {
        const std::string* known = identityKeys.find(photo.source);
        return known ? *known : storedIdentityKey(photo.source);
    };
    std::unordered_set<std::string> keys;
    keys.reserve(photos.size() + incoming.size());
    for (const PhotoItem& photo : photos)
        keys.insert(keyOf(photo));
    for (const PhotoItem& photo : incoming) {
        if (keys.insert(keyOf(photo)).second)
            photos.push_back(photo);
    }
    applyChronologicalOrder();
}

void Project::applyChronologicalOrder() {
    if (!usesManualOrder)
        std::stable_sort(photos.begin(), photos.end(), isTakenBefore);
}

void Project::refreshPhotos(const PhotoRefreshes& refreshes) {
    for (PhotoItem& photo : photos)
        refreshes.applyTo(photo);
}

} // namespace ProjectModel
