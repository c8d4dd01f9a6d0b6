// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <string>

namespace Captioning::ImageEncoding {

/// The picture as Base64 of a JPEG (standard alphabet, padded, no line breaks), scaled down so that its
/// longer side is at most `maxDimension` pixels, never up. `quality` is 0…1. Throws CaptionError with
/// `TransportFailure`. The program has started libvips. Any thread.
[[nodiscard]] std::string jpegBase64(const Foundation::Image& image, int maxDimension, double quality);

/// What both vision backends send.
inline constexpr int sentMaxDimension = 768;
inline constexpr double sentQuality = 0.7;

} // namespace Captioning::ImageEncoding
