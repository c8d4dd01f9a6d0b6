// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ProjectDifference.h>

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>
#include <variant>

namespace Document {

namespace {

using ProjectModel::PhotoItem;
using ProjectModel::Project;
using PlacedPhoto = ProjectDifference::PlacedPhoto;
using ChangedPhoto = ProjectDifference::ChangedPhoto;

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

template <typename Value>
std::optional<Replaced<Value>> replaced(const Value& before, const Value& after) {
    if (before == after)
        return std::nullopt;
    return Replaced<Value>{before, after};
}

/// For each photo before, where it stands afterwards; `none` for those that are gone.
std::vector<std::size_t> positionsAfter(const std::vector<PhotoItem>& before,
                                        const std::vector<PhotoItem>& after) {
    std::vector<std::size_t> positions(before.size(), none);
    std::size_t same = 0;
    while (same < before.size() && same < after.size() && before[same].id == after[same].id) {
        positions[same] = same;
        ++same;
    }
    if (same == before.size())
        return positions;
    // Chains of equal ids, each from its first photo to its last.
    std::unordered_map<Foundation::Uuid, std::size_t> first;
    first.reserve(after.size() - same);
    std::vector<std::size_t> next(after.size(), none);
    for (std::size_t i = after.size(); i-- > same;) {
        const auto [entry, isNew] = first.try_emplace(after[i].id, i);
        if (!isNew)
            next[i] = std::exchange(entry->second, i);
    }
    for (std::size_t i = same; i < before.size(); ++i) {
        const auto found = first.find(before[i].id);
        if (found == first.end() || found->second == none)
            continue;
        positions[i] = found->second;
        found->second = next[found->second];
    }
    return positions;
}

/// Fills in what became of the photos. What is copied is counted first: a step holds no more than it needs.
void comparePhotos(const std::vector<PhotoItem>& before, const std::vector<PhotoItem>& after,
                   ProjectDifference& result) {
    const std::vector<std::size_t> positions = positionsAfter(before, after);
    std::vector<std::size_t> origins(after.size(), none);
    std::vector<std::size_t> changed;
    std::size_t staying = 0;
    bool keepsOrder = true;
    std::size_t last = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const std::size_t position = positions[i];
        if (position == none)
            continue;
        keepsOrder = keepsOrder && position >= last;
        last = position;
        origins[position] = staying++;
        if (!(before[i] == after[position]))
            changed.push_back(i);
    }
    result.changed.reserve(changed.size());
    for (const std::size_t i : changed)
        result.changed.push_back({positions[i], before[i], after[positions[i]]});
    result.removed.reserve(before.size() - staying);
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (positions[i] == none)
            result.removed.push_back({i, before[i]});
    }
    result.inserted.reserve(after.size() - staying);
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (origins[i] == none)
            result.inserted.push_back({i, after[i]});
    }
    if (keepsOrder)
        return;
    std::erase(origins, none);
    result.order = std::move(origins);
    std::ranges::sort(result.changed, {}, &ChangedPhoto::position);
}

/// Takes the photos at the positions out.
void remove(std::vector<PhotoItem>& photos, const std::vector<PlacedPhoto>& removed) {
    if (removed.empty())
        return;
    std::size_t kept = removed.front().position;
    auto gone = removed.begin();
    for (std::size_t i = kept; i < photos.size(); ++i) {
        if (gone != removed.end() && gone->position == i)
            ++gone;
        else
            photos[kept++] = std::move(photos[i]);
    }
    photos.erase(photos.begin() + static_cast<std::ptrdiff_t>(kept), photos.end());
}

void reorder(std::vector<PhotoItem>& photos, const std::vector<std::size_t>& order) {
    if (order.empty())
        return;
    std::vector<PhotoItem> ordered;
    ordered.reserve(photos.size());
    for (const std::size_t origin : order)
        ordered.push_back(std::move(photos[origin]));
    photos = std::move(ordered);
}

void insert(std::vector<PhotoItem>& photos, const std::vector<PlacedPhoto>& inserted) {
    if (inserted.empty())
        return;
    std::vector<PhotoItem> all;
    all.reserve(photos.size() + inserted.size());
    auto next = photos.begin();
    for (const PlacedPhoto& placed : inserted) {
        while (all.size() < placed.position)
            all.push_back(std::move(*next++));
        all.push_back(placed.photo);
    }
    std::move(next, photos.end(), std::back_inserter(all));
    photos = std::move(all);
}

/// Where the changed photos stood before, in their order.
std::vector<std::size_t> formerPositions(const ProjectDifference& difference) {
    std::vector<std::size_t> positions;
    positions.reserve(difference.changed.size());
    auto inserted = difference.inserted.begin();
    for (const ChangedPhoto& change : difference.changed) {
        while (inserted != difference.inserted.end() && inserted->position < change.position)
            ++inserted;
        const std::size_t staying =
            change.position - static_cast<std::size_t>(inserted - difference.inserted.begin());
        positions.push_back(difference.order.empty() ? staying : difference.order[staying]);
    }
    return positions;
}

std::size_t heapBytes(const std::string& text) {
    // A short text lies in the string itself.
    static const std::size_t inside = std::string{}.capacity();
    return text.capacity() > inside ? text.capacity() + 1 : 0;
}

std::size_t heapBytes(const std::optional<std::string>& text) {
    return text ? heapBytes(*text) : 0;
}

std::size_t heapBytes(const ProjectModel::PhotoRef& ref) {
    if (const auto* file = std::get_if<ProjectModel::FilePhotoRef>(&ref))
        return file->bookmark.capacity() + heapBytes(file->displayName);
    return heapBytes(std::get<ProjectModel::LibraryPhotoRef>(ref).localIdentifier);
}

std::size_t heapBytes(const PhotoItem& photo) {
    std::size_t bytes = heapBytes(photo.source) + heapBytes(photo.caption);
    if (photo.location)
        bytes += heapBytes(photo.location->city) + heapBytes(photo.location->country);
    return bytes;
}

std::size_t heapBytes(const ProjectModel::ProjectSettings& settings) {
    return heapBytes(settings.captionPrompt);
}

std::size_t heapBytes(const std::optional<ProjectModel::MusicSelection>& music) {
    return music ? music->bookmark.capacity() + heapBytes(music->displayName) : 0;
}

std::size_t heapBytes(const std::vector<ProjectModel::PhotoSource>& sources) {
    std::size_t bytes = sources.capacity() * sizeof(ProjectModel::PhotoSource);
    for (const ProjectModel::PhotoSource& source : sources) {
        if (const auto* folder = std::get_if<ProjectModel::FolderSourceRef>(&source.ref)) {
            bytes += folder->bookmark.capacity() + heapBytes(folder->displayPath);
        } else {
            const auto& album = std::get<ProjectModel::AlbumSourceRef>(source.ref);
            bytes += heapBytes(album.localIdentifier) + heapBytes(album.title);
        }
    }
    return bytes;
}

template <typename Value>
std::size_t heapBytes(const std::optional<Replaced<Value>>& change) {
    return change ? heapBytes(change->before) + heapBytes(change->after) : 0;
}

} // namespace

bool ProjectDifference::isEmpty() const {
    return !settings && !music && !sources && !usesManualOrder && !schemaVersion && removed.empty() &&
           order.empty() && inserted.empty() && changed.empty();
}

std::size_t ProjectDifference::bytes() const {
    std::size_t sum = sizeof *this + heapBytes(settings) + heapBytes(music) + heapBytes(sources) +
                      (removed.capacity() + inserted.capacity()) * sizeof(PlacedPhoto) +
                      order.capacity() * sizeof(std::size_t) + changed.capacity() * sizeof(ChangedPhoto);
    for (const std::vector<PlacedPhoto>* placed : {&removed, &inserted}) {
        for (const PlacedPhoto& one : *placed)
            sum += heapBytes(one.photo);
    }
    for (const ChangedPhoto& change : changed)
        sum += heapBytes(change.before) + heapBytes(change.after);
    return sum;
}

ProjectDifference difference(const Project& before, const Project& after) {
    ProjectDifference result;
    result.settings = replaced(before.settings, after.settings);
    result.music = replaced(before.music, after.music);
    result.sources = replaced(before.sources, after.sources);
    result.usesManualOrder = replaced(before.usesManualOrder, after.usesManualOrder);
    result.schemaVersion = replaced(before.schemaVersion, after.schemaVersion);
    comparePhotos(before.photos, after.photos, result);
    return result;
}

ProjectDifference inverted(ProjectDifference difference) {
    const auto swapSides = [](auto& change) {
        if (change)
            std::swap(change->before, change->after);
    };
    swapSides(difference.settings);
    swapSides(difference.music);
    swapSides(difference.sources);
    swapSides(difference.usesManualOrder);
    swapSides(difference.schemaVersion);

    // Counted among the photos that stay, until the removed ones are between them again.
    std::vector<std::size_t> positions = formerPositions(difference);
    for (std::size_t i = 0; i < positions.size(); ++i) {
        ChangedPhoto& change = difference.changed[i];
        change.position = positions[i];
        std::swap(change.before, change.after);
    }
    if (!difference.order.empty())
        std::ranges::sort(difference.changed, {}, &ChangedPhoto::position);
    std::size_t between = 0;
    for (ChangedPhoto& change : difference.changed) {
        while (between < difference.removed.size() &&
               difference.removed[between].position <= change.position + between)
            ++between;
        change.position += between;
    }
    std::swap(difference.removed, difference.inserted);

    std::vector<std::size_t> order(difference.order.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[difference.order[i]] = i;
    difference.order = std::move(order);
    return difference;
}

void apply(const ProjectDifference& difference, Project& project) {
    const auto replace = [](const auto& change, auto& value) {
        if (change)
            value = change->after;
    };
    replace(difference.settings, project.settings);
    replace(difference.music, project.music);
    replace(difference.sources, project.sources);
    replace(difference.usesManualOrder, project.usesManualOrder);
    replace(difference.schemaVersion, project.schemaVersion);
    remove(project.photos, difference.removed);
    reorder(project.photos, difference.order);
    insert(project.photos, difference.inserted);
    for (const ChangedPhoto& change : difference.changed)
        project.photos[change.position] = change.after;
}

void revert(const ProjectDifference& difference, Project& project) {
    apply(inverted(difference), project);
}

} // namespace Document
