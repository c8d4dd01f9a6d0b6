// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bookmark.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace Platform {

/// Finds files by their bookmarks for as long as a window is open: a tree is searched for moved files at most
/// once in a lifetime of what was seen, and afresh after that. Thread-safe.
class RenewedResolver {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit RenewedResolver(std::chrono::seconds lifetime = std::chrono::seconds{60},
                             Clock now = std::chrono::steady_clock::now);

    /// As Foundation::BookmarkResolver::resolvedFile.
    [[nodiscard]] std::optional<std::filesystem::path> resolvedFile(const Foundation::Bytes& bookmark);

private:
    std::chrono::seconds m_lifetime;
    Clock m_now;
    std::mutex m_mutex;
    std::chrono::steady_clock::time_point m_made;
    std::shared_ptr<Foundation::BookmarkResolver> m_resolver;
};

} // namespace Platform
