// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bookmark.h>
#include <Foundation/Bytes.h>

#include <string>
#include <variant>

namespace ProjectModel {

/// A photo in a photo library of this machine, by the identifier that library's adapter gave it.
struct LibraryPhotoRef {
    std::string localIdentifier;

    friend bool operator==(const LibraryPhotoRef&, const LibraryPhotoRef&) = default;
};

/// A photo in a file of its own.
struct FilePhotoRef {
    /// A `Foundation::makeBookmark` record, or simply the file's path in UTF-8.
    Foundation::Bytes bookmark;
    /// The file name to show.
    std::string displayName;

    friend bool operator==(const FilePhotoRef&, const FilePhotoRef&) = default;
};

/// Where a photo's pixels are. In files the cases are called "photoKit" and "file".
using PhotoRef = std::variant<LibraryPhotoRef, FilePhotoRef>;

/// The text by which two references are the same photo. A file's key is "file:" and the path its bookmark
/// leads to, normalised without resolving links; a bookmark that leads nowhere falls back to its bytes where
/// they are UTF-8, else to the display name.
[[nodiscard]] std::string identityKey(const PhotoRef& ref, Foundation::BookmarkResolver& resolver);

/// The key of a file whose bookmark leads nowhere, or of a library's photo: what can be told without the
/// disk.
[[nodiscard]] std::string storedIdentityKey(const PhotoRef& ref);

} // namespace ProjectModel
