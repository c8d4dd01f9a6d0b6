// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ByteSource.h>
#include <PhotoSources/ExifTags.h>

namespace PhotoSources {

/// The tags of a file in the ISO base media format: HEIC, AVIF and other HEIF files, and Canon's CR3.
[[nodiscard]] ExifTags readIsoMediaExif(const ByteSource& file);

/// The tags of a JPEG XL file that has boxes; the EXIF box may be compressed.
[[nodiscard]] ExifTags readJpegXlExif(const ByteSource& file);

} // namespace PhotoSources
