// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <ProjectModel/PhotoRef.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace Platform {

/// A small picture shared by all who show it. Null: there is none to be had.
using Thumbnail = std::shared_ptr<const Foundation::Image>;

/// Which thumbnail: of which photo, its longest side at most so many pixels.
struct ThumbnailKey {
    ProjectModel::PhotoRef photo;
    int maxPixel = 0;

    friend bool operator==(const ThumbnailKey&, const ThumbnailKey&) = default;
};

struct ThumbnailKeyHash {
    [[nodiscard]] std::size_t operator()(const ThumbnailKey& key) const {
        const auto ofText = std::hash<std::string_view>{};
        std::size_t photo = 0;
        if (const auto* file = std::get_if<ProjectModel::FilePhotoRef>(&key.photo))
            photo = ofText({reinterpret_cast<const char*>(file->bookmark.data()), file->bookmark.size()});
        else
            photo = ofText(std::get<ProjectModel::LibraryPhotoRef>(key.photo).localIdentifier);
        return photo ^ std::hash<int>{}(key.maxPixel);
    }
};

} // namespace Platform
