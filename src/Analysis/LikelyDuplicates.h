// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/DuplicateClusterer.h>
#include <Foundation/Image.h>
#include <Foundation/Uuid.h>

#include <cstddef>
#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace Analysis {

/// Guesses, while photos go by, which of them will end up in a group: those that resemble one of the last
/// few. Keeps the pictures of the last few, and of older ones as far as they fit. Owner's thread.
class LikelyDuplicates {
public:
    struct Photo {
        Foundation::Uuid id;
        Foundation::Image image;
    };

    /// `storeBytes` bounds the pictures of older photos.
    explicit LikelyDuplicates(std::size_t storeBytes)
        : m_freeBytes(storeBytes) {}

    /// `item` holds the photo's features, if it has any; they are copied. `isKnown`: it counts as found in
    /// any case.
    void add(Photo photo, const ClusterItem* item, bool isKnown);

    /// Photos found since they were last taken.
    [[nodiscard]] std::size_t foundCount() const { return m_found.size(); }
    [[nodiscard]] std::vector<Photo> takeFound();

    /// The picture of a photo that was not found, if it is still there. Any thread, while nobody adds.
    [[nodiscard]] const Foundation::Image* find(const Foundation::Uuid& photo) const;

private:
    struct Recent {
        /// Without its picture once it is found.
        Photo photo;
        std::optional<ClusterItem> item;
        bool isFound = false;
    };

    void markFound(Recent& recent);
    void retireOldest();

    std::deque<Recent> m_recent;
    std::vector<Photo> m_found;
    std::unordered_map<Foundation::Uuid, Foundation::Image> m_store;
    std::size_t m_freeBytes;
};

} // namespace Analysis
