// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GreyImage.h>
#include <Foundation/Image.h>

namespace Analysis {

/// How a photo uses the tones between black and white: what tells a good exposure from a bad one.
struct PhotoTones {
    /// The mean of grey, 0…1.
    double brightness = 0;
    /// The standard deviation of grey after averaging 4×4 pixels, so that noise adds nothing. 0…0.5.
    double contrast = 0;
    /// The level of each pixel's brightest channel that only the brightest hundredth exceeds, 0…1: low when
    /// underexposed.
    double highlights = 0;
    /// How much higher the level is that only a thousandth exceeds, 0…1: highlights fade out in a good photo
    /// and end at a wall in an overexposed one.
    double highlightsFade = 0;
    /// The level of each pixel's darkest channel that only the darkest hundredth does not reach, 0…1: high
    /// when no black is left.
    double shadows = 0;
    /// How many times more pixels are burnt out (or black) than nearly so, as a logarithm to base 10. About
    /// -3…3, 0 for neither.
    double burnt = 0;
    double crushed = 0;
};

/// Of an image that has pixels, and the same in grey at half its size. Any thread.
[[nodiscard]] PhotoTones tonesOf(const Foundation::Image& image, const GreyImage& half);

} // namespace Analysis
