// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ByteSource.h>
#include <PhotoSources/ExifTags.h>

#include <optional>

namespace PhotoSources {

/// Finds the EXIF data of a JPEG, PNG, WebP, TIFF, HEIC, AVIF, JPEG XL or camera raw file without reading
/// more than the way to it. Tags all absent when such a file has none or is broken; nothing when the file is
/// of another kind. Never fails and ends soon whatever the bytes are.
[[nodiscard]] std::optional<ExifTags> readEmbeddedExif(const ByteSource& file);

} // namespace PhotoSources
