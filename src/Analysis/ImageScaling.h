#pragma once

#include <Foundation/Image.h>

#include <vector>

namespace Analysis {

/// Pixels as networks take them: red, green and blue interleaved, 0…255, rows from top to bottom.
struct FloatImage {
    int width = 0;
    int height = 0;
    std::vector<float> values;
};

/// The whole image at another size, its proportions given up. Every pixel of the image counts, also when it
/// shrinks a lot. The image must not be empty. Any thread.
[[nodiscard]] FloatImage scaled(const Foundation::Image& image, int width, int height);

} // namespace Analysis
