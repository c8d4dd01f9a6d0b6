// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideShade.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Slides {

namespace {

/// Width and height of the threshold pattern's period.
constexpr int period = 8;

/// The ordered-dither rank 0…63 of a position: the bits of x^y and y interleaved, most significant last.
constexpr int ditherRank(int x, int y) {
    int rank = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const int a = ((x ^ y) >> bit) & 1;
        const int b = (y >> bit) & 1;
        rank |= (a << (5 - 2 * bit)) | (b << (4 - 2 * bit));
    }
    return rank;
}

/// Rows `firstRow` to `lastRow` (excluded) of the frame; `opacity` gives 0…1 for a row's centre.
template <class Opacity>
Frames::OverlayBitmap shade(int width, int firstRow, int lastRow, Opacity opacity) {
    Frames::OverlayBitmap bitmap{
        .x = 0, .y = firstRow, .width = width, .height = lastRow - firstRow, .pixels = {}};
    const auto stride = static_cast<std::size_t>(width) * 4;
    bitmap.pixels.resize(stride * static_cast<std::size_t>(bitmap.height));
    for (int y = firstRow; y < lastRow; ++y) {
        std::array<std::uint8_t, period> alphas{};
        for (int x = 0; x < period; ++x)
            alphas[static_cast<std::size_t>(x)] = dithered(opacity(y + 0.5) * 255, x, y);
        std::uint8_t* row = bitmap.pixels.data() + stride * static_cast<std::size_t>(y - firstRow);
        for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x)
            row[x * 4 + 3] = alphas[x % period];
    }
    return bitmap;
}

} // namespace

std::uint8_t dithered(double value, int x, int y) {
    const double threshold = (ditherRank(x & (period - 1), y & (period - 1)) + 0.5) / (period * period);
    return static_cast<std::uint8_t>(std::clamp(std::floor(value + threshold), 0.0, 255.0));
}

Frames::OverlayBitmap SlideShade::bottom(Frames::FrameSize frame) {
    const double centre = frame.height / 2.0;
    return shade(frame.width, frame.height / 2, frame.height,
                 [=](double y) { return bottomOpacity * std::max(0.0, y - centre) / centre; });
}

Frames::OverlayBitmap SlideShade::top(Frames::FrameSize frame) {
    const double centre = frame.height / 2.0;
    return shade(frame.width, 0, (frame.height + 1) / 2,
                 [=](double y) { return topOpacity * std::max(0.0, centre - y) / centre; });
}

} // namespace Slides
