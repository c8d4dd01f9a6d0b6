// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Frames/FrameMemory.h>
#include <Frames/SampleGrid.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace Frames {

/// A photo as 8-bit planes Y, Cb, Cr, BT.709, limited range. Small photos keep a chroma sample for every
/// pixel, since a frame enlarges them; the others are 4:2:0 as frames are, half the memory.
class PreparedPhoto {
public:
    struct Plane {
        int width = 0;
        int height = 0;
        std::ptrdiff_t stride = 0;
        const std::uint8_t* samples = nullptr;
        SampleGrid grid;
    };

    /// The image must not be empty.
    explicit PreparedPhoto(const Foundation::Image& image);

    /// In pixels.
    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }
    [[nodiscard]] const Plane& plane(int plane) const { return m_planes[static_cast<std::size_t>(plane)]; }

private:
    int m_width;
    int m_height;
    std::array<Plane, 3> m_planes{};
    AlignedMemory m_memory;
};

} // namespace Frames
