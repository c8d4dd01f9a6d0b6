// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <cstddef>
#include <vector>

namespace Analysis {

/// Pixels as networks take them, 0…255: a plane of red values, then one of green and one of blue, each with
/// its rows from top to bottom.
struct FloatPlanes {
    int width = 0;
    int height = 0;
    std::vector<float> values;

    /// All black.
    FloatPlanes(int width, int height);

    [[nodiscard]] float* row(std::size_t channel, int y);
    [[nodiscard]] const float* row(std::size_t channel, int y) const;
};

/// The whole image at another size, its proportions given up. Every pixel of the image counts, also when it
/// shrinks a lot. The image must not be empty. Any thread.
[[nodiscard]] FloatPlanes scaled(const Foundation::Image& image, int width, int height);

} // namespace Analysis
