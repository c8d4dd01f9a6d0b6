// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <cstdint>

/// Pictures that stand for photos, made from a number, and what may have happened to them.
namespace Analysis::PaintedPhotos {

/// Sky, hills, and a few dozen things of all colours, with soft light and fine texture. Shifted by `shift`
/// pixels it is another shot of the same scene.
[[nodiscard]] Foundation::Image scene(std::uint32_t seed, int width, int height, int shift = 0);

[[nodiscard]] Foundation::Image blurred(const Foundation::Image& image, int radius);
/// As if the camera had moved by `length` pixels (odd) during the exposure, along (x, y).
[[nodiscard]] Foundation::Image moved(const Foundation::Image& image, int length, int x, int y);
/// Gaussian, of the given standard deviation in levels.
[[nodiscard]] Foundation::Image noisy(const Foundation::Image& image, double deviation);
/// As if taken with 2^stops times the light.
[[nodiscard]] Foundation::Image exposed(const Foundation::Image& image, double stops);

} // namespace Analysis::PaintedPhotos
