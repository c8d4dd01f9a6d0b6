// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Text.h>
#include <Roamly/Document/ReviewModel.h>

#include <algorithm>
#include <utility>

namespace Document {

using Foundation::Uuid;
using ProjectModel::PhotoItem;
using ProjectModel::Project;

namespace {

/// What is left of a text that was typed, without white space at its ends; nothing counts as absent.
std::optional<std::string> usable(const std::optional<std::string_view>& typed) {
    const std::string_view text = Foundation::trimmed(typed.value_or(std::string_view{}));
    return text.empty() ? std::nullopt : std::optional{std::string{text}};
}

/// "3 Photos", as the names of steps have it.
std::string photos(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " Photo" : " Photos");
}

} // namespace

std::size_t ReviewModel::selectedCount() const {
    const std::vector<PhotoItem>& all = m_document->project().photos;
    return static_cast<std::size_t>(
        std::count_if(all.begin(), all.end(), [](const PhotoItem& photo) { return photo.isSelected; }));
}

void ReviewModel::toggleSelection(const Uuid& id) {
    const std::vector<PhotoItem>& all = m_document->project().photos;
    const auto photo =
        std::find_if(all.begin(), all.end(), [&](const PhotoItem& candidate) { return candidate.id == id; });
    if (photo == all.end())
        return;
    setSelection(!photo->isSelected, {id});
}

void ReviewModel::setSelection(bool isSelected, const std::set<Uuid>& ids) {
    m_document->edit((isSelected ? "Select " : "Leave Out ") + photos(ids.size()),
                     [&](Project& project) { project.userSetSelections(isSelected, ids); });
}

void ReviewModel::toggleSelections(const std::set<Uuid>& ids) {
    const std::vector<PhotoItem>& all = m_document->project().photos;
    const bool anyIsLeftOut = std::any_of(all.begin(), all.end(), [&](const PhotoItem& photo) {
        return !photo.isSelected && ids.count(photo.id) > 0;
    });
    setSelection(anyIsLeftOut, ids);
}

void ReviewModel::setCaption(std::string_view text, const Uuid& id) {
    const std::optional<std::string> caption = usable(text);
    m_document->edit({"Edit Caption", "caption " + id.text()},
                     [&](Project& project) { project.userSetCaption(caption, id); });
}

void ReviewModel::setPlace(const std::optional<std::string>& city, const std::optional<std::string>& country,
                           const std::set<Uuid>& ids) {
    ProjectModel::ResolvedLocation named{usable(city), usable(country), ProjectModel::Provenance::user};
    std::optional<ProjectModel::ResolvedLocation> location;
    if (named.city || named.country)
        location = std::move(named);
    m_document->edit(location ? "Set Place" : "Clear Place",
                     [&](Project& project) { project.userSetLocations(location, ids); });
}

void ReviewModel::movePhotos(const std::set<std::size_t>& positions, std::size_t destination) {
    m_document->edit("Move " + photos(positions.size()),
                     [&](Project& project) { project.userMovePhotos(positions, destination); });
}

void ReviewModel::movePhotos(const std::set<Uuid>& ids, const Uuid& neighbour, bool isAfter) {
    const std::vector<PhotoItem>& all = m_document->project().photos;
    std::set<std::size_t> positions;
    std::optional<std::size_t> destination;
    for (std::size_t position = 0; position < all.size(); ++position) {
        if (ids.count(all[position].id) > 0)
            positions.insert(positions.end(), position);
        if (!destination && all[position].id == neighbour)
            destination = position + (isAfter ? 1 : 0);
    }
    if (positions.empty() || !destination)
        return;
    const std::size_t first = *positions.begin();
    const std::size_t end = *positions.rbegin() + 1;
    const bool isBlock = end - first == positions.size();
    if (isBlock && *destination >= first && *destination <= end)
        return;
    movePhotos(positions, *destination);
}

void ReviewModel::sortByDate() {
    m_document->edit("Sort by Date", [](Project& project) { project.userSortByDate(); });
}

void ReviewModel::removePhotos(const std::set<Uuid>& ids) {
    m_document->edit("Remove " + photos(ids.size()), [&](Project& project) { project.removePhotos(ids); });
}

} // namespace Document
