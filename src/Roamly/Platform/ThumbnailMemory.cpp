// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/ThumbnailMemory.h>

#include <utility>

namespace Platform {

std::size_t ThumbnailMemory::Entry::bytes() const {
    // The records and the maps' own nodes, about: it keeps a project full of missing photos bounded too.
    constexpr std::size_t overhead = 512;
    return overhead + (thumbnail ? thumbnail->pixels.size() : 0);
}

ThumbnailMemory::ThumbnailMemory(std::size_t mostBytes)
    : m_mostBytes(mostBytes) {}

std::optional<Thumbnail> ThumbnailMemory::find(const ThumbnailKey& key) {
    const std::scoped_lock lock{m_mutex};
    const auto place = m_places.find(key);
    if (place == m_places.end())
        return std::nullopt;
    m_entries.splice(m_entries.begin(), m_entries, place->second);
    return place->second->thumbnail;
}

std::optional<Thumbnail> ThumbnailMemory::find(const ThumbnailKey& key, const std::string& content) {
    const std::scoped_lock lock{m_mutex};
    const auto place = m_places.find(key);
    if (place == m_places.end() || place->second->content != content)
        return std::nullopt;
    m_entries.splice(m_entries.begin(), m_entries, place->second);
    return place->second->thumbnail;
}

void ThumbnailMemory::insert(const ThumbnailKey& key, std::string content, Thumbnail thumbnail) {
    Entry entry{key, std::move(content), std::move(thumbnail)};
    const std::scoped_lock lock{m_mutex};
    if (const auto place = m_places.find(key); place != m_places.end())
        remove(place->second);
    if (entry.bytes() > m_mostBytes)
        return;
    m_bytes += entry.bytes();
    m_entries.push_front(std::move(entry));
    m_places.emplace(key, m_entries.begin());
    while (m_bytes > m_mostBytes)
        remove(std::prev(m_entries.end()));
}

void ThumbnailMemory::forgetMissing() {
    const std::scoped_lock lock{m_mutex};
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        const auto next = std::next(entry);
        if (!entry->thumbnail)
            remove(entry);
        entry = next;
    }
}

std::size_t ThumbnailMemory::bytes() const {
    const std::scoped_lock lock{m_mutex};
    return m_bytes;
}

void ThumbnailMemory::remove(Entries::iterator entry) {
    m_bytes -= entry->bytes();
    m_places.erase(entry->key);
    m_entries.erase(entry);
}

} // namespace Platform
