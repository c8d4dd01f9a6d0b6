#pragma once

#include <Foundation/Image.h>

namespace Analysis::Aesthetics {

/// What can be measured of how well a photo was taken, each of the image in 8-bit grey (ITU-R BT.601
/// weights).
struct Measures {
    /// How evenly the photo uses its tones: the entropy of its 64 levels of grey after averaging 4×4 pixels,
    /// so that noise adds nothing. 0…1.
    double tonalRange = 0;
    /// The part of pixels that are almost white, almost black, and of which a colour is burnt out. 0…1.
    double whites = 0;
    double blacks = 0;
    double burntOut = 0;
    /// 0…1.
    double meanBrightness = 0;
    /// The standard deviation after averaging 4×4 pixels. 0…0.5.
    double contrast = 0;
    /// As by SharpnessScorer.
    double laplacianVariance = 0;
    /// The standard deviation of noise, in levels of grey: what the calmest tenth of all 16×16 blocks shows.
    double noise = 0;
};

/// Both sides must be at least 3 pixels. Any thread.
[[nodiscard]] Measures measures(const Foundation::Image& image);

/// How good a photo looks, 0…1: well exposed, sharp and free of noise is better. A photo's blurred, noisy or
/// badly exposed version scores lower than the photo, also after the sharpness of BestShotSelector is added,
/// which takes noise for detail. 0.5 for an image too small to tell. Any thread.
[[nodiscard]] double score(const Foundation::Image& image);
[[nodiscard]] double score(const Measures& measures);

} // namespace Analysis::Aesthetics
