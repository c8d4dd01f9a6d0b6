// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Jobs/Job.h>
#include <Roamly/Platform/ThumbnailProvider.h>

#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace Platform {

/// What one view asks of the provider, photo by photo. A photo has at most one request open: asking again,
/// for another size as well, takes the place of the one before. Owner's thread only; nobody hears of what was
/// asked once this is gone.
class ThumbnailRequests {
public:
    /// Called on the owner's thread, once for each request that was not dropped.
    using Ready =
        std::function<void(const Foundation::Uuid& photo, int maxPixel, const Thumbnail& thumbnail)>;

    ThumbnailRequests(std::shared_ptr<ThumbnailProvider> provider, Jobs::Executor executor, Ready ready);
    ~ThumbnailRequests();
    ThumbnailRequests(const ThumbnailRequests&) = delete;
    ThumbnailRequests& operator=(const ThumbnailRequests&) = delete;

    /// What is in memory, at once; a null thumbnail when it is known that there is none.
    [[nodiscard]] std::optional<Thumbnail> find(const ProjectModel::PhotoRef& photo, int maxPixel) const;

    /// Also for what is in memory, to learn whether the file has changed since.
    void request(const Foundation::Uuid& id, const ProjectModel::PhotoRef& photo, int maxPixel);

    /// Drops the requests for all other photos: they have scrolled away.
    void keepOnly(std::span<const Foundation::Uuid> photos);

    /// The side in pixels to ask for where `pixels` are shown. A few sizes serve all zooms and screens, so
    /// that the cache does not hold one file for each.
    [[nodiscard]] static int sizeFor(int pixels);

private:
    struct Owner;

    std::shared_ptr<ThumbnailProvider> m_provider;
    std::shared_ptr<Owner> m_owner;
};

} // namespace Platform
