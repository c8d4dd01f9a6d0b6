// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/IdentityKeys.h>

#include <functional>
#include <string_view>
#include <utility>
#include <variant>

namespace ProjectModel {

std::size_t IdentityKeys::Hash::operator()(const PhotoRef& ref) const {
    if (const auto* library = std::get_if<LibraryPhotoRef>(&ref))
        return std::hash<std::string>{}(library->localIdentifier);
    const auto& file = std::get<FilePhotoRef>(ref);
    const std::string_view bookmark{reinterpret_cast<const char*>(file.bookmark.data()),
                                    file.bookmark.size()};
    return std::hash<std::string_view>{}(bookmark);
}

void IdentityKeys::add(const PhotoRef& ref, std::string key) {
    m_keys.try_emplace(ref, std::move(key));
}

void IdentityKeys::merge(IdentityKeys other) {
    m_keys.merge(other.m_keys);
}

const std::string* IdentityKeys::find(const PhotoRef& ref) const {
    const auto found = m_keys.find(ref);
    return found == m_keys.end() ? nullptr : &found->second;
}

std::vector<PhotoItem> IdentityKeys::missing(std::span<const PhotoItem> photos) const {
    std::vector<PhotoItem> result;
    for (const PhotoItem& photo : photos) {
        if (!find(photo.source))
            result.push_back(photo);
    }
    return result;
}

IdentityKeys identityKeys(std::span<const PhotoItem> photos, Foundation::BookmarkResolver& resolver) {
    IdentityKeys keys;
    for (const PhotoItem& photo : photos)
        keys.add(photo.source, identityKey(photo.source, resolver));
    return keys;
}

} // namespace ProjectModel
