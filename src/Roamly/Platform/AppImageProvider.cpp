// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/AppImageProvider.h>

#include <exception>
#include <utility>
#include <variant>

namespace Platform {

namespace {

std::optional<Foundation::Image> nonEmpty(std::optional<Foundation::Image> image) {
    return image && !image->isEmpty() ? std::move(image) : std::nullopt;
}

} // namespace

AppImageProvider::AppImageProvider(int maxPixel, LibraryImageLoader libraryImage,
                                   std::shared_ptr<const PhotoSources::PhotoDecoding> decoding)
    : m_maxPixel(maxPixel)
    , m_libraryImage(std::move(libraryImage))
    , m_decoding(std::move(decoding))
    , m_resolver(std::make_shared<Foundation::BookmarkResolver>()) {}

std::optional<Foundation::Image> AppImageProvider::image(const ProjectModel::PhotoRef& ref) const {
    if (m_maxPixel <= 0)
        return std::nullopt;
    // One photo that exhausts memory or sits on a failing disk must not end a run over thousands.
    try {
        if (const auto* file = std::get_if<ProjectModel::FilePhotoRef>(&ref)) {
            const auto path = m_resolver->resolvedFile(file->bookmark);
            if (!path)
                return std::nullopt;
            return nonEmpty(m_decoding->decode(*path, m_maxPixel));
        }
        const auto& library = std::get<ProjectModel::LibraryPhotoRef>(ref);
        return m_libraryImage ? nonEmpty(m_libraryImage(library.localIdentifier, m_maxPixel)) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace Platform
