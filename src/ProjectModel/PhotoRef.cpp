// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/PhotoRef.h>

#include <filesystem>
#include <optional>
#include <string_view>

namespace ProjectModel {

std::string storedIdentityKey(const PhotoRef& ref) {
    if (const auto* photo = std::get_if<LibraryPhotoRef>(&ref))
        return "photoKit:" + photo->localIdentifier;
    const auto& file = std::get<FilePhotoRef>(ref);
    // Taken as it stands, not normalised: the file may be gone, and the text alone is what identifies it.
    const std::string_view text{reinterpret_cast<const char*>(file.bookmark.data()), file.bookmark.size()};
    return "file:" + (Foundation::isValidUtf8(text) ? std::string{text} : file.displayName);
}

std::string identityKey(const PhotoRef& ref, Foundation::BookmarkResolver& resolver) {
    if (const auto* file = std::get_if<FilePhotoRef>(&ref)) {
        if (const std::optional<std::filesystem::path> path = resolver.resolve(file->bookmark))
            return "file:" + path->string();
    }
    return storedIdentityKey(ref);
}

} // namespace ProjectModel
