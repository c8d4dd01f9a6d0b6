// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <ProjectModel/Coordinate.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace PhotoSources {

class FileSource;

struct ImageFileMetadata {
    std::optional<Foundation::Instant> captureDate;
    std::optional<ProjectModel::Coordinate> coordinate;
    /// True unless `captureDate` is the EXIF DateTimeOriginal: it is the file's creation date, or absent.
    bool captureDateIsLowConfidence = true;

    friend bool operator==(const ImageFileMetadata&, const ImageFileMetadata&) = default;
};

namespace ImageFileMetadataReader {

/// Never fails: what cannot be read is absent. `prepareMetadata` was called. Any thread.
[[nodiscard]] ImageFileMetadata read(const std::filesystem::path& file);
[[nodiscard]] ImageFileMetadata read(const FileSource& file);

/// `text` as "2023:07:14 18:22:05", `offset` as "+02:00"; without a usable offset the text is wall-clock time
/// in the machine's zone.
[[nodiscard]] std::optional<Foundation::Instant> parseExifDate(std::string_view text,
                                                               const std::optional<std::string>& offset);

} // namespace ImageFileMetadataReader

} // namespace PhotoSources
