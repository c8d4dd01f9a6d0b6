#include <ProjectModel/Project.h>

#include <algorithm>
#include <unordered_set>

namespace ProjectModel {

namespace {

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
    PhotoItem* photo = findPhoto(photos, id);
    if (photo && (!photo->location || photo->location->provenance != Provenance::user))
        photo->location = location;
}

void Project::applyProposedSelection(bool isSelected, std::optional<Foundation::Uuid> clusterID,
                                     std::optional<double> qualityScore, const Foundation::Uuid& id) {
    PhotoItem* photo = findPhoto(photos, id);
    if (!photo)
        return;
    photo->clusterID = clusterID;
    photo->qualityScore = qualityScore;
    if (photo->selectionProvenance != Provenance::user)
        photo->isSelected = isSelected;
}

void Project::applyGeneratedCaption(const std::string& caption, const Foundation::Uuid& id) {
    const PhotoItem* photo = findPhoto(photos, id);
    if (photo && photo->captionProvenance != Provenance::user)
        setGeneratedCaption(caption, id);
}

void Project::setGeneratedCaption(const std::string& caption, const Foundation::Uuid& id) {
    PhotoItem* photo = findPhoto(photos, id);
    if (!photo)
        return;
    photo->caption = caption;
    photo->captionProvenance = Provenance::generated;
}

void Project::userSetLocation(const std::optional<ResolvedLocation>& location, const Foundation::Uuid& id) {
    PhotoItem* photo = findPhoto(photos, id);
    if (!photo)
        return;
    photo->location = location;
    if (photo->location)
        photo->location->provenance = Provenance::user;
}

void Project::userSetCaption(const std::optional<std::string>& caption, const Foundation::Uuid& id) {
    PhotoItem* photo = findPhoto(photos, id);
    if (!photo)
        return;
    photo->caption = caption;
    photo->captionProvenance = caption ? std::optional{Provenance::user} : std::nullopt;
}

void Project::userSetSelection(bool isSelected, const Foundation::Uuid& id) {
    PhotoItem* photo = findPhoto(photos, id);
    if (!photo)
        return;
    photo->isSelected = isSelected;
    photo->selectionProvenance = Provenance::user;
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

void Project::mergeImportedPhotos(const std::vector<PhotoItem>& incoming,
                                  Foundation::BookmarkResolver& resolver) {
    std::unordered_set<std::string> keys;
    keys.reserve(photos.size() + incoming.size());
    for (const PhotoItem& photo : photos)
        keys.insert(identityKey(photo.source, resolver));
    for (const PhotoItem& photo : incoming) {
        if (keys.insert(identityKey(photo.source, resolver)).second)
            photos.push_back(photo);
    }
    applyChronologicalOrder();
}

void Project::applyChronologicalOrder() {
    if (!usesManualOrder)
        std::stable_sort(photos.begin(), photos.end(), isTakenBefore);
}

} // namespace ProjectModel
