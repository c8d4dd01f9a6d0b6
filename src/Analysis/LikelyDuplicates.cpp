// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/LikelyDuplicates.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Analysis {

namespace {

/// Bursts are seldom interrupted by more photos than this.
constexpr std::size_t recentCount = 12;

bool isAlike(const ClusterItem& a, const ClusterItem& b) {
    if (a.captureDate && b.captureDate &&
        std::abs(static_cast<double>((*a.captureDate - *b.captureDate).count())) >
            DuplicateClusterer::defaultTimeWindow)
        return false;
    return DuplicateClusterer::distance(a.features, b.features) < DuplicateClusterer::defaultThreshold;
}

} // namespace

void LikelyDuplicates::add(Photo photo, const ClusterItem* item, bool isKnown) {
    if (m_recent.size() == recentCount)
        retireOldest();
    Recent& added =
        m_recent.emplace_back(Recent{std::move(photo), item ? std::optional(*item) : std::nullopt, false});
    if (isKnown)
        markFound(added);
    if (!added.item)
        return;
    for (Recent& other : m_recent) {
        if (&other == &added || !other.item || (other.isFound && added.isFound))
            continue;
        if (isAlike(*other.item, *added.item)) {
            markFound(other);
            markFound(added);
        }
    }
}

std::vector<LikelyDuplicates::Photo> LikelyDuplicates::takeFound() {
    return std::exchange(m_found, {});
}

const Foundation::Image* LikelyDuplicates::find(const Foundation::Uuid& photo) const {
    const auto isIt = [&](const Recent& recent) { return recent.photo.id == photo && !recent.isFound; };
    if (const auto recent = std::find_if(m_recent.begin(), m_recent.end(), isIt); recent != m_recent.end())
        return &recent->photo.image;
    const auto stored = m_store.find(photo);
    return stored == m_store.end() ? nullptr : &stored->second;
}

void LikelyDuplicates::markFound(Recent& recent) {
    if (std::exchange(recent.isFound, true))
        return;
    m_found.push_back({recent.photo.id, std::exchange(recent.photo.image, {})});
}

void LikelyDuplicates::retireOldest() {
    Recent oldest = std::move(m_recent.front());
    m_recent.pop_front();
    const std::size_t bytes = oldest.photo.image.pixels.size();
    if (oldest.isFound || bytes > m_freeBytes)
        return;
    m_freeBytes -= bytes;
    m_store.insert_or_assign(oldest.photo.id, std::move(oldest.photo.image));
}

} // namespace Analysis
