// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Frames/FrameSize.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace Frames {

/// One video frame as the encoder takes it: 8-bit 4:2:0 planes Y, Cb, Cr, BT.709, limited range (black is
/// 16, 128, 128). Chroma planes round odd sizes up. Rows and planes are aligned for SIMD.
class YuvFrame {
public:
    /// Undefined contents. Throws std::invalid_argument unless the size is positive.
    explicit YuvFrame(FrameSize size);

    [[nodiscard]] FrameSize size() const { return m_size; }
    [[nodiscard]] int planeWidth(int plane) const {
        return plane == 0 ? m_size.width : (m_size.width + 1) / 2;
    }
    [[nodiscard]] int planeHeight(int plane) const {
        return plane == 0 ? m_size.height : (m_size.height + 1) / 2;
    }
    /// Bytes from one row to the next.
    [[nodiscard]] std::ptrdiff_t stride(int plane) const {
        return m_strides[static_cast<std::size_t>(plane)];
    }
    [[nodiscard]] std::uint8_t* plane(int plane) { return m_planes[static_cast<std::size_t>(plane)]; }
    [[nodiscard]] const std::uint8_t* plane(int plane) const {
        return m_planes[static_cast<std::size_t>(plane)];
    }

    void fillBlack();

private:
    /// Keeps the memory for the next frame of this size.
    struct GiveBack {
        std::size_t size;
        void operator()(std::uint8_t* memory) const;
    };

    FrameSize m_size;
    std::array<std::ptrdiff_t, 3> m_strides{};
    std::array<std::uint8_t*, 3> m_planes{};
    std::unique_ptr<std::uint8_t, GiveBack> m_memory;
};

/// The frame as an sRGB picture, chroma interpolated.
[[nodiscard]] Foundation::Image toImage(const YuvFrame& frame);

} // namespace Frames
