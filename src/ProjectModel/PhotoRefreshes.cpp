// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/PhotoRefreshes.h>

namespace ProjectModel {

PhotoRefreshes::PhotoRefreshes(const std::vector<PhotoRefresh>& refreshes) {
    m_refreshes.reserve(refreshes.size());
    for (const PhotoRefresh& refresh : refreshes)
        m_refreshes.emplace(refresh.id, refresh);
}

void PhotoRefreshes::applyTo(PhotoItem& photo) const {
    const auto [begin, end] = m_refreshes.equal_range(photo.id);
    for (auto entry = begin; entry != end; ++entry) {
        const PhotoRefresh& refresh = entry->second;
        if (!(refresh.was == photo.source))
            continue;
        photo.source = refresh.source;
        photo.isMissing = refresh.isMissing;
        return;
    }
}

} // namespace ProjectModel
