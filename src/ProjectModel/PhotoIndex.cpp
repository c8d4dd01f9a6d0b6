// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/PhotoIndex.h>

namespace ProjectModel {

PhotoIndex::PhotoIndex(std::span<const PhotoItem> photos) {
    m_positions.reserve(photos.size());
    for (std::size_t i = 0; i < photos.size(); ++i)
        m_positions.try_emplace(photos[i].id, i);
}

std::optional<std::size_t> PhotoIndex::find(const Foundation::Uuid& id) const {
    const auto found = m_positions.find(id);
    return found == m_positions.end() ? std::nullopt : std::optional{found->second};
}

} // namespace ProjectModel
