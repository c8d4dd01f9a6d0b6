// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <PhotoSources/ColourProfile.h>
#include <PhotoSources/VipsHandle.h>

#include <cstdint>
#include <optional>
#include <span>

/// From an opened picture to pixels: transparency, size, colour.
namespace PhotoSources::VipsRendering {

[[nodiscard]] bool hasProfile(const VipsHandle::Picture& picture);

[[nodiscard]] VipsHandle::Picture withProfile(const VipsHandle::Picture& picture,
                                              std::span<const std::uint8_t> profile);

/// Cameras set to Adobe RGB say so in EXIF, by the interoperability index R03; most embed no profile.
[[nodiscard]] bool saysAdobeRgb(const VipsHandle::Picture& picture);

/// The picture over black, at this size, in sRGB. Nothing when its pixels cannot be computed.
[[nodiscard]] std::optional<Foundation::Image> rendered(VipsHandle::Picture picture, VipsHandle::Size target);

/// Whether enough of a damaged picture came out to be worth showing. Decoders fill what is missing, at the
/// end, with one colour.
[[nodiscard]] bool isWorthShowing(const Foundation::Image& image);

} // namespace PhotoSources::VipsRendering
