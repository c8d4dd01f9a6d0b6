// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Frames {

/// Where the samples of a plane lie on the picture: sample (i, j) stands for the square of `pitch` picture
/// pixels that begins at (i * pitch + left, j * pitch).
struct SampleGrid {
    double pitch = 1;
    double left = 0;

    /// A plane with one sample for every pixel.
    [[nodiscard]] static constexpr SampleGrid full() { return {1, 0}; }
    /// A chroma plane of 4:2:0 as H.264 and HEVC take it unless told otherwise: centred on the first pixel of
    /// each pair horizontally, between the two vertically.
    [[nodiscard]] static constexpr SampleGrid halved() { return {2, -0.5}; }

    /// Picture coordinates of a plane position, and back. Integers are the borders between samples.
    [[nodiscard]] constexpr double pictureX(double x) const { return x * pitch + left; }
    [[nodiscard]] constexpr double pictureY(double y) const { return y * pitch; }
    [[nodiscard]] constexpr double planeX(double x) const { return (x - left) / pitch; }
    [[nodiscard]] constexpr double planeY(double y) const { return y / pitch; }
};

} // namespace Frames
