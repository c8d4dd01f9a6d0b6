// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bytes.h>

#include <filesystem>
#include <memory>
#include <optional>

namespace Foundation {

/// A lasting reference to a file or folder: a small versioned record of its path, device, inode and size that
/// is never valid UTF-8 (its first byte is 0xFF). Nothing when the file cannot be examined. The path is
/// stored absolute and normalised, symbolic links unresolved.
[[nodiscard]] std::optional<Bytes> makeBookmark(const std::filesystem::path& path);

/// Finds the files that bookmarks lead to, also after a rename or a move inside the same tree. One resolver
/// serves one operation: it searches a tree at most once and remembers what it saw. Thread-safe.
class BookmarkResolver {
public:
    BookmarkResolver();
    ~BookmarkResolver();
    BookmarkResolver(BookmarkResolver&&) noexcept;
    BookmarkResolver& operator=(BookmarkResolver&&) noexcept;

    /// The file's present location, absolute and normalised; nothing when it no longer exists or cannot be
    /// found, or when the bytes are no record that this version knows. Bytes that are a bare path in UTF-8
    /// are not a record either: see `resolvedFile`.
    [[nodiscard]] std::optional<std::filesystem::path> resolve(const Bytes& bookmark);

    /// As `resolve`, and accepts a bare path in UTF-8 too, as long as something exists there. What everything
    /// that opens files calls.
    [[nodiscard]] std::optional<std::filesystem::path> resolvedFile(const Bytes& bookmark);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace Foundation
