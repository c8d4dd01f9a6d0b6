// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Platform/ThumbnailKey.h>

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace Platform {

/// The thumbnails used last, up to a bound in bytes. Thread-safe; nothing waits but for other look-ups.
class ThumbnailMemory {
public:
    explicit ThumbnailMemory(std::size_t mostBytes);

    /// Nothing when it is not known; a null thumbnail when it is known that there is none.
    [[nodiscard]] std::optional<Thumbnail> find(const ThumbnailKey& key);
    /// The same, as long as it was made of this content.
    [[nodiscard]] std::optional<Thumbnail> find(const ThumbnailKey& key, const std::string& content);

    /// `content` stands for what the thumbnail was made of. One that is larger than the bound is not kept.
    void insert(const ThumbnailKey& key, std::string content, Thumbnail thumbnail);

    /// Forgets which photos have no thumbnail, since their files may have come back.
    void forgetMissing();

    [[nodiscard]] std::size_t bytes() const;

private:
    struct Entry {
        ThumbnailKey key;
        std::string content;
        Thumbnail thumbnail;

        [[nodiscard]] std::size_t bytes() const;
    };
    using Entries = std::list<Entry>;

    void remove(Entries::iterator entry);

    const std::size_t m_mostBytes;
    mutable std::mutex m_mutex;
    std::size_t m_bytes = 0;
    /// The one used last comes first.
    Entries m_entries;
    std::unordered_map<ThumbnailKey, Entries::iterator, ThumbnailKeyHash> m_places;
};

} // namespace Platform
