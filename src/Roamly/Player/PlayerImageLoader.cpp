// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Player/PlayerImageLoader.h>

#include <utility>

namespace Player {

PlayerImageLoader::PlayerImageLoader(const ProjectModel::Project& project, Provider provider)
    : m_provider(std::move(provider)) {
    for (const ProjectModel::PhotoItem& photo : project.photos)
        m_refByID.try_emplace(photo.id, photo.source);
}

std::shared_ptr<const Foundation::Image> PlayerImageLoader::kept(const Foundation::Uuid& id) {
    const auto found = m_cache.find(id);
    if (found == m_cache.end())
        return nullptr;
    m_lru.splice(m_lru.end(), m_lru, found->second.use);
    return found->second.image;
}

void PlayerImageLoader::keep(const Foundation::Uuid& id, std::shared_ptr<const Foundation::Image> image) {
    m_lru.push_back(id);
    m_cache.insert_or_assign(id, Kept{std::move(image), std::prev(m_lru.end())});
    while (m_lru.size() > cap) {
        m_cache.erase(m_lru.front());
        m_lru.pop_front();
    }
}

void PlayerImageLoader::touch(const Foundation::Uuid& id) {
    const std::scoped_lock lock{m_mutex};
    (void)kept(id);
}

bool PlayerImageLoader::holds(const Foundation::Uuid& id) const {
    const std::scoped_lock lock{m_mutex};
    return m_cache.contains(id);
}

std::shared_ptr<const Foundation::Image> PlayerImageLoader::image(const Foundation::Uuid& id) {
    std::shared_ptr<Decoding> decoding;
    {
        const std::scoped_lock lock{m_mutex};
        if (auto image = kept(id))
            return image;
        decoding = m_decoding[id].lock();
        if (!decoding)
            m_decoding[id] = decoding = std::make_shared<Decoding>();
    }
    const std::scoped_lock decodes{decoding->mutex};
    {
        const std::scoped_lock lock{m_mutex};
        if (auto image = kept(id))
            return image;
    }
    const auto ref = m_refByID.find(id);
    if (ref == m_refByID.end())
        return nullptr;
    std::optional<Foundation::Image> decoded = m_provider(ref->second);
    const std::scoped_lock lock{m_mutex};
    m_decoding.erase(id);
    if (!decoded || decoded->isEmpty())
        return nullptr;
    auto image = std::make_shared<const Foundation::Image>(*std::move(decoded));
    keep(id, image);
    return image;
}

} // namespace Player
