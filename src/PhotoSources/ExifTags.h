// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ByteSource.h>

#include <optional>
#include <string>

namespace PhotoSources {

/// The six tags that place a photo in time and space, as the file holds them. Text ends at its first NUL and
/// is present only where the file types it as text.
struct ExifTags {
    std::optional<std::string> dateTimeOriginal;
    std::optional<std::string> offsetTimeOriginal;
    /// Decimal degrees without sign; finite.
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<std::string> latitudeRef;
    std::optional<std::string> longitudeRef;

    friend bool operator==(const ExifTags&, const ExifTags&) = default;
};

/// True when a TIFF structure begins here: the form in which EXIF data lies in every kind of file. Camera raw
/// files of some makers have their own number in place of TIFF's 42.
[[nodiscard]] bool isTiff(const ByteSource& source);

/// The tags of a TIFF structure: of its first directory and the EXIF and GPS directories that it leads to.
/// What is missing, broken or of another type is absent. Follows no other link, so it ends whatever it reads.
[[nodiscard]] ExifTags readTiffTags(const ByteSource& tiff);

/// As `readTiffTags` for files that keep the EXIF and the GPS directory in TIFF structures of their own.
[[nodiscard]] ExifTags readSeparateTiffTags(const ByteSource& exif, const ByteSource& gps);

} // namespace PhotoSources
