// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ExifTags.h>

#include <filesystem>

namespace PhotoSources {

/// The tags of a regular file as the Exiv2 library reads them, for the rarer formats. Never fails: what
/// cannot be read is absent. `prepareMetadata` was called. Any thread.
[[nodiscard]] ExifTags readExiv2Tags(const std::filesystem::path& file);

} // namespace PhotoSources
