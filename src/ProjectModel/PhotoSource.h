// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bytes.h>
#include <Foundation/Uuid.h>

#include <string>
#include <variant>

namespace ProjectModel {

/// An album of a photo library and its title when it was imported.
struct AlbumSourceRef {
    std::string localIdentifier;
    std::string title;

    friend bool operator==(const AlbumSourceRef&, const AlbumSourceRef&) = default;
};

struct FolderSourceRef {
    Foundation::Bytes bookmark;
    /// The path to show.
    std::string displayPath;

    friend bool operator==(const FolderSourceRef&, const FolderSourceRef&) = default;
};

/// In files the cases are called "photoKitAlbum" and "folder".
using PhotoSourceRef = std::variant<AlbumSourceRef, FolderSourceRef>;

/// One imported folder or album.
struct PhotoSource {
    Foundation::Uuid id;
    PhotoSourceRef ref;

    friend bool operator==(const PhotoSource&, const PhotoSource&) = default;
};

} // namespace ProjectModel
