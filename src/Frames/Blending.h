// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>

/// Arithmetic on rows of 8-bit samples, rounding to nearest. The loops are written for the compiler to
/// vectorise.
namespace Frames::Blending {

/// A share 0…1 in steps of 1 / `whole`.
using Share = std::int16_t;
inline constexpr Share whole = 1 << 14;

[[nodiscard]] Share share(double value);

/// below = below * (1 - share) + over * share.
void mix(std::uint8_t* below, const std::uint8_t* over, std::size_t count, Share share);

/// samples = ground * (1 - share) + samples * share.
void fade(std::uint8_t* samples, std::size_t count, std::uint8_t ground, Share share);

/// samples = samples * (1 - alpha) + ground * alpha, with alpha 0…255.
void shade(std::uint8_t* samples, const std::uint8_t* alpha, std::size_t count, std::uint8_t ground);

/// samples = samples * (1 - alpha) + paint / 255, with alpha 0…255. `paint` is the colour multiplied by
/// alpha: 0…255 * alpha, and up to half a level more.
void paint(std::uint8_t* samples, const std::uint8_t* alpha, const std::uint16_t* paint, std::size_t count);

} // namespace Frames::Blending
