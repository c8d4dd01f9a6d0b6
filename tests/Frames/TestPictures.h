// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Frames/Compositor.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Frames::Testing {

using Colour = std::array<std::uint8_t, 3>;

/// A picture whose pixel (x, y) is `colourAt(x, y)`.
template <typename ColourAt>
Foundation::Image paint(int width, int height, const ColourAt& colourAt) {
    Foundation::Image image;
    image.width = width;
    image.height = height;
    image.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const Colour colour = colourAt(x, y);
            image.pixels.insert(image.pixels.end(), colour.begin(), colour.end());
        }
    return image;
}

inline Foundation::Image flat(int width, int height, Colour colour) {
    Foundation::Image image = paint(width, 1, [&](int, int) { return colour; });
    image.height = height;
    const std::vector<std::uint8_t> row = image.pixels;
    for (int y = 1; y < height; ++y)
        image.pixels.insert(image.pixels.end(), row.begin(), row.end());
    return image;
}

inline PhotoLayer layerOf(const Foundation::Image& image, double scale = 1, double offsetX = 0,
                          double offsetY = 0, double opacity = 1) {
    return {preparePhoto(image), {scale, {offsetX, offsetY}}, opacity};
}

inline int sampleAt(const YuvFrame& frame, int plane, int x, int y) {
    return frame.plane(plane)[y * frame.stride(plane) + x];
}

inline int componentAt(const Foundation::Image& image, std::size_t component, int x, int y) {
    return image.row(y)[static_cast<std::size_t>(x) * 3 + component];
}

inline bool sameSamples(const YuvFrame& a, const YuvFrame& b) {
    if (a.size() != b.size())
        return false;
    for (int p = 0; p < 3; ++p)
        for (int y = 0; y < a.planeHeight(p); ++y)
            for (int x = 0; x < a.planeWidth(p); ++x)
                if (sampleAt(a, p, x, y) != sampleAt(b, p, x, y))
                    return false;
    return true;
}

} // namespace Frames::Testing
