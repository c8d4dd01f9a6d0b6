// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ImageFile.h>

#include <cstdint>
#include <optional>

namespace PhotoSources {

/// What a JPEG's frame header says, read without decoding anything.
struct JpegHeader {
    int width = 0;
    int height = 0;
    bool progressive = false;
    /// Coefficients over all components, which is what a progressive picture keeps in memory.
    std::uint64_t coefficients = 0;

    [[nodiscard]] static std::optional<JpegHeader> read(const ImageFile& file);
};

/// How many scans the file announces, stopping at `most`.
[[nodiscard]] int countJpegScans(const ImageFile& file, int most);

} // namespace PhotoSources
