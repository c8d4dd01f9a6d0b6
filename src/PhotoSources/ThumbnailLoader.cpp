// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <PhotoSources/CacheTrimming.h>
#include <PhotoSources/ImageFile.h>
#include <PhotoSources/ThumbnailLoader.h>
#include <PhotoSources/VipsPicture.h>

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

namespace PhotoSources {

namespace {

constexpr int jpegQuality = 80;

/// Whether a file begins and ends as a JPEG does: one that a crash cut off would decode to a picture of which
/// a part is grey.
bool isWholeJpeg(const std::filesystem::path& path) {
    const std::optional<ImageFile> file = ImageFile::open(path);
    if (!file || file->size() < 4)
        return false;
    std::array<std::uint8_t, 2> start{};
    std::array<std::uint8_t, 2> end{};
    return file->readAt(0, start) == start.size() &&
           file->readAt(file->size() - end.size(), end) == end.size() &&
           start == std::array<std::uint8_t, 2>{0xFF, 0xD8} && end == std::array<std::uint8_t, 2>{0xFF, 0xD9};
}

/// A thumbnail that cannot be kept is shown all the same.
void store(const Foundation::Image& image, const std::filesystem::path& file) {
    try {
        const std::optional<std::string> jpeg = VipsPicture::jpeg(image, jpegQuality);
        if (!jpeg)
            return;
        std::filesystem::create_directories(file.parent_path());
        Foundation::writeCacheFile(file, *jpeg);
    } catch (const std::exception&) {
        // A full disk, a folder that takes no files: the next run decodes the photo anew.
    }
}

} // namespace

ThumbnailLoader::ThumbnailLoader(std::filesystem::path cacheDirectory,
                                 std::shared_ptr<const PhotoDecoding> decoding)
    : m_cacheDirectory(std::move(cacheDirectory))
    , m_decoding(std::move(decoding)) {}

std::optional<Foundation::Image> ThumbnailLoader::thumbnail(const std::filesystem::path& file,
                                                            std::string_view cacheKey, int maxPixel) {
    if (std::optional<Foundation::Image> cached = cachedThumbnail(cacheKey, maxPixel))
        return cached;
    std::optional<Foundation::Image> image = m_decoding->decode(file, maxPixel);
    if (!image || image->isEmpty())
        return std::nullopt;
    store(*image, cacheFile(cacheKey, maxPixel));
    return image;
}

std::optional<Foundation::Image> ThumbnailLoader::cachedThumbnail(std::string_view cacheKey, int maxPixel) {
    enforceCacheCapIfNeeded();
    const std::filesystem::path file = cacheFile(cacheKey, maxPixel);
    if (maxPixel < 1 || !isWholeJpeg(file))
        return std::nullopt;
    return m_decoding->decode(file, maxPixel);
}

std::filesystem::path ThumbnailLoader::cacheFile(std::string_view cacheKey, int maxPixel) const {
    return m_cacheDirectory / (std::string{cacheKey} + "-" + std::to_string(maxPixel) + ".jpg");
}

void ThumbnailLoader::enforceCacheCapIfNeeded() {
    std::call_once(m_didEnforceCap, [this] {
        CacheTrimming::trim(m_cacheDirectory, maxCacheBytes, CacheTrimming::removeFile);
    });
}

} // namespace PhotoSources
