// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <cstddef>
#include <vector>

namespace Analysis {

/// One plane of brightness, 0…255, row after row.
struct GreyImage {
    int width = 0;
    int height = 0;
    std::vector<float> values;

    [[nodiscard]] const float* row(int y) const {
        return values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

/// The image in 8-bit grey (ITU-R BT.601 weights): whole numbers. Any thread.
[[nodiscard]] GreyImage greyOf(const Foundation::Image& image);

/// The means of 2×2 pixels; an odd last row or column is left out. Any thread.
[[nodiscard]] GreyImage halved(const GreyImage& image);

} // namespace Analysis
