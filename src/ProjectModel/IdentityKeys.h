// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace ProjectModel {

/// The identity keys of photos, worked out beforehand: finding them may ask the disk, and a project's
/// operations do not. A plain value.
class IdentityKeys {
public:
    void add(const PhotoRef& ref, std::string key);
    /// Adds the other's keys; one that is known already stays.
    void merge(IdentityKeys other);

    /// The photo's key; nothing when it was not worked out.
    [[nodiscard]] const std::string* find(const PhotoRef& ref) const;
    /// Those of the photos whose key was not worked out.
    [[nodiscard]] std::vector<PhotoItem> missing(std::span<const PhotoItem> photos) const;

private:
    struct Hash {
        [[nodiscard]] std::size_t operator()(const PhotoRef& ref) const;
    };
    std::unordered_map<PhotoRef, std::string, Hash> m_keys;
};

/// Works out the photos' keys, asking the disk where their files are.
[[nodiscard]] IdentityKeys identityKeys(std::span<const PhotoItem> photos,
                                        Foundation::BookmarkResolver& resolver);

} // namespace ProjectModel
