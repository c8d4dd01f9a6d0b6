// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bookmark.h>
#include <Foundation/Image.h>
#include <ProjectModel/PhotoRef.h>
#include <Roamly/Platform/PictureDecoding.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Platform {

/// Turns any photo reference into decoded pixels of a bounded size. Every failure yields nothing.
/// Thread-safe.
class AppImageProvider {
public:
    /// Delivers a photo-library photo by its local identifier, its longest side at most the given pixels.
    using LibraryImageLoader = std::function<std::optional<Foundation::Image>(const std::string&, int)>;

    /// `maxPixel` bounds the longest side. Without a `libraryImage` loader, photo-library photos yield
    /// nothing.
    explicit AppImageProvider(
        int maxPixel, LibraryImageLoader libraryImage = {},
        std::shared_ptr<const PhotoSources::PhotoDecoding> decoding = pictureDecoding());

    [[nodiscard]] std::optional<Foundation::Image> image(const ProjectModel::PhotoRef& ref) const;

private:
    int m_maxPixel;
    LibraryImageLoader m_libraryImage;
    std::shared_ptr<const PhotoSources::PhotoDecoding> m_decoding;
    /// Shared by all photos of one run, so that a tree is searched for moved files once.
    std::shared_ptr<Foundation::BookmarkResolver> m_resolver;
};

} // namespace Platform
