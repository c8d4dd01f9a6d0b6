// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ReviewOps.h>

#include <iterator>
#include <utility>

namespace ProjectModel::ReviewOps {

void move(std::vector<PhotoItem>& photos, const std::set<std::size_t>& positions, std::size_t destination) {
    std::vector<PhotoItem> reordered;
    std::vector<PhotoItem> block;
    std::vector<PhotoItem> tail;
    reordered.reserve(photos.size());
    for (std::size_t i = 0; i < photos.size(); ++i) {
        std::vector<PhotoItem>& part = positions.contains(i) ? block : i < destination ? reordered : tail;
        part.push_back(std::move(photos[i]));
    }
    reordered.insert(reordered.end(), std::move_iterator(block.begin()), std::move_iterator(block.end()));
    reordered.insert(reordered.end(), std::move_iterator(tail.begin()), std::move_iterator(tail.end()));
    photos = std::move(reordered);
}

} // namespace ProjectModel::ReviewOps
