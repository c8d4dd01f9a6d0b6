// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/Cancellation.h>
#include <ProjectModel/PhotoRef.h>
#include <Roamly/Platform/MachineImport.h>

#include <memory>
#include <system_error>

namespace Platform {

namespace {

std::optional<Foundation::Bytes> bookmarkOfFolder(const std::filesystem::path& folder) {
    std::error_code error;
    return std::filesystem::is_directory(folder, error) ? Foundation::makeBookmark(folder) : std::nullopt;
}

} // namespace

Jobs::ImportEnvironment machineImport() {
    return {
        .newID = Foundation::Uuid::random,
        .bookmarkOfFolder = bookmarkOfFolder,
        .photosInFolder = PhotoSources::FolderImporter::importPhotos,
        // One resolver for all, so that a tree is searched for moved files at most once.
        .identityKeys =
            [resolver = std::make_shared<Foundation::BookmarkResolver>()](
                std::span<const ProjectModel::PhotoItem> photos, const std::stop_token& stop) {
                ProjectModel::IdentityKeys keys;
                for (const ProjectModel::PhotoItem& photo : photos) {
                    Foundation::throwIfStopped(stop);
                    keys.add(photo.source, ProjectModel::identityKey(photo.source, *resolver));
                }
                return keys;
            },
    };
}

} // namespace Platform
