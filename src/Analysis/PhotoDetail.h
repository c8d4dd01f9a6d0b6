// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GreyImage.h>
#include <Foundation/Image.h>

namespace Analysis {

/// How much fine detail a photo shows, and how much of it is noise. All in levels of 8 bits.
struct PhotoDetail {
    /// The variance of the Laplacian (as by SharpnessScorer), and of the image at half its size.
    double variance = 0;
    double varianceAtHalfSize = 0;
    /// The standard deviation of noise: what the calmest tenth of all 16×16 blocks shows of it, in grey and
    /// in the differences of colours.
    double noise = 0;
    double colourNoise = 0;
    /// How much less sharp the least sharp direction is than all four together, as a natural logarithm; 0
    /// when all are equally sharp, the lower the more the camera or the subject moved.
    double evenness = 0;
};

/// Of an image whose sides are at least 3 pixels, and the same in grey, at its size and at half of it. Any
/// thread.
[[nodiscard]] PhotoDetail detailOf(const Foundation::Image& image, const GreyImage& grey,
                                   const GreyImage& half);

} // namespace Analysis
