// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ImageFile.h>

namespace PhotoSources {

/// The families of picture files that are told apart before anything is decoded.
enum class ImageFormat {
    unknown,
    jpeg,
    png,
    gif,
    webp,
    tiff,
    jpegXL,
    jpeg2000,
    /// HEIC and AVIF.
    heif,
    cameraRaw,
};

/// By content. A camera raw file that is built like a TIFF (NEF, CR2, ARW, DNG ...) opens with a small
/// preview; it is told from a TIFF by what its directories say of their samples, and only then by its name.
[[nodiscard]] ImageFormat imageFormatOf(const ImageFile& file);

/// Whether a file with a raw file's name is a TIFF without any sensor's data.
[[nodiscard]] bool isPlainTiff(const ImageFile& file);

} // namespace PhotoSources
