// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <PhotoSources/PhotoDecoding.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace PhotoSources {

/// Small pictures of photos in files, kept as JPEGs in a folder between runs. Thread-safe: calls decode side
/// by side once the first has brought the folder below its bound.
class ThumbnailLoader {
public:
    /// What the folder may hold when a loader first needs it; it may grow past that until the next run.
    static constexpr std::int64_t maxCacheBytes = 524'288'000;

    /// Touches no files; the folder is made when the first thumbnail is written.
    explicit ThumbnailLoader(std::filesystem::path cacheDirectory,
                             std::shared_ptr<const PhotoDecoding> decoding = decodingInProcess());

    /// The file's picture, upright, its longest side at most `maxPixel` pixels, from the cache or else
    /// decoded at reduced size and put there. `cacheKey` stands for this very content of this file, can be a
    /// file's name and holds no slash. Nothing when there is no picture to be had, or `maxPixel` is below 1.
    [[nodiscard]] std::optional<Foundation::Image> thumbnail(const std::filesystem::path& file,
                                                             std::string_view cacheKey, int maxPixel);

    /// As `thumbnail`, only when it is in the cache already.
    [[nodiscard]] std::optional<Foundation::Image> cachedThumbnail(std::string_view cacheKey, int maxPixel);

private:
    [[nodiscard]] std::filesystem::path cacheFile(std::string_view cacheKey, int maxPixel) const;
    void enforceCacheCapIfNeeded();

    std::filesystem::path m_cacheDirectory;
    std::shared_ptr<const PhotoDecoding> m_decoding;
    std::once_flag m_didEnforceCap;
};

} // namespace PhotoSources
