// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

namespace PhotoSources {

/// One of the eight ways to turn a picture: first the axes may be exchanged, then the result mirrored.
struct Orientation {
    bool transpose = false;
    bool mirrorX = false;
    bool mirrorY = false;

    /// The turn that makes a picture with this EXIF tag upright; an unknown value stands for 1.
    [[nodiscard]] static Orientation fromExif(int tag);

    /// First this turn, then `next`.
    [[nodiscard]] Orientation followedBy(const Orientation& next) const;

    [[nodiscard]] bool isIdentity() const { return !transpose && !mirrorX && !mirrorY; }

    friend bool operator==(const Orientation&, const Orientation&) = default;
};

[[nodiscard]] Foundation::Image turned(Foundation::Image image, const Orientation& orientation);

} // namespace PhotoSources
