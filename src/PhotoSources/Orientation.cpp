// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/Orientation.h>

#include <algorithm>
#include <cstddef>

namespace PhotoSources {

Orientation Orientation::fromExif(int tag) {
    switch (tag) {
    case 2:
        return {false, true, false};
    case 3:
        return {false, true, true};
    case 4:
        return {false, false, true};
    case 5:
        return {true, false, false};
    case 6:
        return {true, true, false};
    case 7:
        return {true, true, true};
    case 8:
        return {true, false, true};
    default:
        return {};
    }
}

Orientation Orientation::followedBy(const Orientation& next) const {
    return {transpose != next.transpose, next.mirrorX != (next.transpose ? mirrorY : mirrorX),
            next.mirrorY != (next.transpose ? mirrorX : mirrorY)};
}

Foundation::Image turned(Foundation::Image image, const Orientation& orientation) {
    if (orientation.isIdentity())
        return image;
    Foundation::Image result;
    result.width = orientation.transpose ? image.height : image.width;
    result.height = orientation.transpose ? image.width : image.height;
    result.pixels.resize(image.pixels.size());

    // How far the source moves for one step to the right and one step down in the result.
    const std::ptrdiff_t sourceRow = static_cast<std::ptrdiff_t>(image.width) * 3;
    const std::ptrdiff_t across = orientation.transpose ? sourceRow : 3;
    const std::ptrdiff_t down = orientation.transpose ? 3 : sourceRow;
    const std::ptrdiff_t stepX = orientation.mirrorX ? -across : across;
    const std::ptrdiff_t stepY = orientation.mirrorY ? -down : down;
    const std::uint8_t* origin = image.pixels.data();
    if (orientation.mirrorX)
        origin += across * (result.width - 1);
    if (orientation.mirrorY)
        origin += down * (result.height - 1);

    // Square blocks keep both sides of a transposition in the cache.
    constexpr int block = 32;
    for (int top = 0; top < result.height; top += block) {
        const int bottom = std::min(top + block, result.height);
        for (int left = 0; left < result.width; left += block) {
            const int right = std::min(left + block, result.width);
            for (int y = top; y < bottom; ++y) {
                const std::uint8_t* from = origin + stepY * y + stepX * left;
                std::uint8_t* to =
                    result.pixels.data() + (static_cast<std::ptrdiff_t>(y) * result.width + left) * 3;
                for (int x = left; x < right; ++x, from += stepX, to += 3) {
                    to[0] = from[0];
                    to[1] = from[1];
                    to[2] = from[2];
                }
            }
        }
    }
    return result;
}

} // namespace PhotoSources
