#include <ProjectModel/ReviewOps.h>
#include <Roamly/ReviewModel.h>

#include <QString>
#include <algorithm>

namespace Roamly {

using Foundation::Uuid;
using ProjectModel::PhotoItem;
using ProjectModel::Project;

namespace {

/// Without the white space, line ends and Unicode spaces at both ends.
std::string trimmed(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).trimmed().toStdString();
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
    std::optional<std::string> caption = trimmed(text);
    if (caption->empty())
        caption.reset();
    m_document->edit([&](Project& project) { project.userSetCaption(caption, id); });
}

void ReviewModel::setPlace(const std::optional<std::string>& city, const std::optional<std::string>& country,
                           const Uuid& id) {
    std::optional<ProjectModel::ResolvedLocation> location;
    if (city || country)
        location = ProjectModel::ResolvedLocation{city, country, ProjectModel::Provenance::user};
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
