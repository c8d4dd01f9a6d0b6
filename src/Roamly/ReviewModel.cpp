#include <Foundation/Text.h>
#include <ProjectModel/ReviewOps.h>
#include <Roamly/ReviewModel.h>

#include <algorithm>
#include <utility>

namespace Roamly {

using Foundation::Uuid;
using ProjectModel::PhotoItem;
using ProjectModel::Project;

namespace {

/// What is left of a text that was typed, without white space at its ends; nothing counts as absent.
std::optional<std::string> usable(const std::optional<std::string_view>& typed) {
    const std::string_view text = Foundation::trimmed(typed.value_or(std::string_view{}));
    return text.empty() ? std::nullopt : std::optional{std::string{text}};
}

} // namespace

std::size_t ReviewModel::selectedCount() const {
    const std::vector<PhotoItem>& photos = m_document->project().photos;
    return static_cast<std::size_t>(
        std::count_if(photos.begin(), photos.end(), [](const PhotoItem& photo) { return photo.isSelected; }));
}

void ReviewModel::toggleSelection(const Uuid& id) {
    const std::vector<PhotoItem>& photos = m_document->project().photos;
    const auto photo = std::find_if(photos.begin(), photos.end(),
                                    [&](const PhotoItem& candidate) { return candidate.id == id; });
    if (photo == photos.end())
        return;
    setSelection(!photo->isSelected, {id});
}

void ReviewModel::setSelection(bool isSelected, const std::set<Uuid>& ids) {
    m_document->edit([&](Project& project) {
        for (const Uuid& id : ids)
            project.userSetSelection(isSelected, id);
    });
}

void ReviewModel::setCaption(std::string_view text, const Uuid& id) {
    const std::optional<std::string> caption = usable(text);
    m_document->edit([&](Project& project) { project.userSetCaption(caption, id); });
}

void ReviewModel::setPlace(const std::optional<std::string>& city, const std::optional<std::string>& country,
                           const Uuid& id) {
    ProjectModel::ResolvedLocation named{usable(city), usable(country), ProjectModel::Provenance::user};
    std::optional<ProjectModel::ResolvedLocation> location;
    if (named.city || named.country)
        location = std::move(named);
    m_document->edit([&](Project& project) { project.userSetLocation(location, id); });
}

void ReviewModel::movePhotos(const std::set<std::size_t>& positions, std::size_t destination) {
    m_document->edit([&](Project& project) {
        ProjectModel::ReviewOps::move(project.photos, positions, destination);
        project.markManuallyOrdered();
    });
}

void ReviewModel::removePhotos(const std::set<Uuid>& ids) {
    m_document->edit([&](Project& project) { project.removePhotos(ids); });
}

} // namespace Roamly
