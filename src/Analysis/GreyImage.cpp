// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/GreyImage.h>

#include <cstdint>

namespace Analysis {

GreyImage greyOf(const Foundation::Image& image) {
    GreyImage grey{image.width, image.height, {}};
    grey.values.resize(image.pixels.size() / 3);
    const std::uint8_t* pixel = image.pixels.data();
    for (float& value : grey.values) {
        value = static_cast<float>((299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2] + 500) / 1000);
        pixel += 3;
    }
    return grey;
}

GreyImage halved(const GreyImage& image) {
    GreyImage half{image.width / 2, image.height / 2, {}};
    const auto width = static_cast<std::size_t>(half.width);
    half.values.resize(width * static_cast<std::size_t>(half.height));
    float* out = half.values.data();
    for (int y = 0; y < half.height; ++y) {
        const float* const upper = image.row(2 * y);
        const float* const lower = image.row(2 * y + 1);
        for (std::size_t x = 0; x < width; ++x)
            out[x] = (upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1]) / 4;
        out += width;
    }
    return half;
}

} // namespace Analysis
