// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/ThumbnailRequests.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Platform {

/// Outlives its requests for as long as an answer is on its way.
struct ThumbnailRequests::Owner {
    struct Open {
        /// Tells the answer to this request from one to an earlier one for the same photo.
        std::uint64_t number = 0;
        ThumbnailProvider::Ticket ticket = 0;
    };

    /// Held while the executor is called, which may not be once the owner is gone.
    std::mutex mutex;
    Jobs::Executor executor;

    /// Owner's thread only.
    Ready ready;
    std::uint64_t lastNumber = 0;
    std::unordered_map<Foundation::Uuid, Open> open;
};

ThumbnailRequests::ThumbnailRequests(std::shared_ptr<ThumbnailProvider> provider, Jobs::Executor executor,
                                     Ready ready)
    : m_provider(std::move(provider))
    , m_owner(std::make_shared<Owner>()) {
    m_owner->executor = std::move(executor);
    m_owner->ready = std::move(ready);
}

ThumbnailRequests::~ThumbnailRequests() {
    keepOnly({});
    const std::scoped_lock lock{m_owner->mutex};
    m_owner->executor = nullptr;
}

std::optional<Thumbnail> ThumbnailRequests::find(const ProjectModel::PhotoRef& photo, int maxPixel) const {
    return m_provider->find({photo, maxPixel});
}

void ThumbnailRequests::request(const Foundation::Uuid& id, const ProjectModel::PhotoRef& photo,
                                int maxPixel) {
    Owner::Open& open = m_owner->open[id];
    const ThumbnailProvider::Ticket previous = open.ticket;
    open.number = ++m_owner->lastNumber;
    open.ticket = m_provider->request(
        {photo, maxPixel}, [owner = m_owner, id, maxPixel, number = open.number](const Thumbnail& thumbnail) {
            const std::scoped_lock lock{owner->mutex};
            if (!owner->executor)
                return;
            owner->executor([owner, id, maxPixel, number, thumbnail] {
                const auto found = owner->open.find(id);
                if (found == owner->open.end() || found->second.number != number)
                    return;
                owner->open.erase(found);
                // A copy: the listener may end its owner.
                const Ready ready = owner->ready;
                ready(id, maxPixel, thumbnail);
            });
        });
    if (previous != 0)
        m_provider->drop({&previous, 1});
}

void ThumbnailRequests::keepOnly(std::span<const Foundation::Uuid> photos) {
    const std::unordered_set<Foundation::Uuid> kept{photos.begin(), photos.end()};
    std::vector<ThumbnailProvider::Ticket> dropped;
    for (auto open = m_owner->open.begin(); open != m_owner->open.end();) {
        if (kept.contains(open->first)) {
            ++open;
            continue;
        }
        dropped.push_back(open->second.ticket);
        open = m_owner->open.erase(open);
    }
    m_provider->drop(dropped);
}

int ThumbnailRequests::sizeFor(int pixels) {
    constexpr std::array<int, 4> sizes{128, 256, 512, 1024};
    const auto* size = std::ranges::lower_bound(sizes, pixels);
    return size == sizes.end() ? sizes.back() : *size;
}

} // namespace Platform
