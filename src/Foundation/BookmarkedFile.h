// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bytes.h>

#include <cstdint>
#include <filesystem>
#include <optional>

namespace Foundation {

/// What a bookmark says of its file as it was when the bookmark was made.
struct BookmarkedFile {
    std::filesystem::path path;
    /// What `makeBookmark` saw; absent for a bare path in UTF-8. The size is 0 for folders.
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::uint64_t size = 0;
    };
    std::optional<Identity> identity;
};

/// Without asking the disk. Nothing when the bytes are neither a record that this version knows nor an
/// absolute path in UTF-8.
[[nodiscard]] std::optional<BookmarkedFile> readBookmark(const Bytes& bookmark);

} // namespace Foundation
