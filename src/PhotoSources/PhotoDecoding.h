// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <filesystem>
#include <memory>
#include <optional>

namespace PhotoSources {

/// The one door to the pixels of picture files. Whoever needs them is handed one of these and does not know
/// where the decoders run. Thread-safe.
class PhotoDecoding {
public:
    virtual ~PhotoDecoding() = default;

    /// The file's picture as `ImageDecoder::decode` has it, its longest side at most `maxPixel` pixels;
    /// nothing when the file cannot be decoded.
    [[nodiscard]] virtual std::optional<Foundation::Image> decode(const std::filesystem::path& file,
                                                                  int maxPixel) const = 0;
};

/// Decodes where it is called. `prepareDecoding` was called.
[[nodiscard]] std::shared_ptr<const PhotoDecoding> decodingInProcess();

} // namespace PhotoSources
