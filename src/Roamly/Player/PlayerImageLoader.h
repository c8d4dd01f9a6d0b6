// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace Player {

/// Keeps the photos that a player needs now or next. Thread-safe; two that ask for one photo at the same time
/// share one decoding.
class PlayerImageLoader {
public:
    /// The longest side of a photo, in pixels.
    static constexpr int maxPixel = 2048;
    /// Photos kept; the least recently used one goes first.
    static constexpr std::size_t cap = 8;

    /// Gives a photo's pixels, its longest side at most `maxPixel`; nothing when that fails. Called on the
    /// asking thread.
    using Provider = std::function<std::optional<Foundation::Image>(const ProjectModel::PhotoRef&)>;

    PlayerImageLoader(const ProjectModel::Project& project, Provider provider);

    /// The photo, from the kept ones or decoded now; null when it is not in the project or cannot be decoded.
    [[nodiscard]] std::shared_ptr<const Foundation::Image> image(const Foundation::Uuid& id);
    /// Marks a kept photo as most recently used.
    void touch(const Foundation::Uuid& id);
    [[nodiscard]] bool holds(const Foundation::Uuid& id) const;

private:
    struct Kept {
        std::shared_ptr<const Foundation::Image> image;
        std::list<Foundation::Uuid>::iterator use;
    };
    /// What somebody is decoding right now; the others wait on its mutex.
    struct Decoding {
        std::mutex mutex;
    };

    [[nodiscard]] std::shared_ptr<const Foundation::Image> kept(const Foundation::Uuid& id);
    void keep(const Foundation::Uuid& id, std::shared_ptr<const Foundation::Image> image);

    Provider m_provider;
    std::unordered_map<Foundation::Uuid, ProjectModel::PhotoRef> m_refByID;

    mutable std::mutex m_mutex;
    std::unordered_map<Foundation::Uuid, Kept> m_cache;
    /// Least recently used first.
    std::list<Foundation::Uuid> m_lru;
    std::unordered_map<Foundation::Uuid, std::weak_ptr<Decoding>> m_decoding;
};

} // namespace Player
