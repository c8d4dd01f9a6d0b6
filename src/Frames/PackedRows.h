// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Frames/FrameMemory.h>
#include <Frames/ZimgGraph.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace Frames {

/// A few rows of planar R, G, B, as zimg takes and gives them when rows are handed over one by one.
class PlanarRows {
public:
    /// `rows` is a power of two.
    PlanarRows(int width, unsigned rows);

    [[nodiscard]] std::uint8_t* row(std::size_t component, unsigned y) const;
    [[nodiscard]] zimg_image_buffer buffer() const;

private:
    std::size_t m_stride;
    unsigned m_rows;
    AlignedMemory m_memory;
};

/// Hands the rows of a packed picture to a graph. A graph wider or taller than the picture sees the last
/// column or row again.
class PackedRowReader {
public:
    PackedRowReader(const Foundation::Image& image, int width, unsigned rows);

    [[nodiscard]] zimg_image_buffer_const buffer() const;
    [[nodiscard]] ZimgCallback callback() { return {&PackedRowReader::unpack, this}; }

private:
    static int unpack(void* user, unsigned y, unsigned left, unsigned right);

    const Foundation::Image& m_image;
    PlanarRows m_planar;
};

/// Takes rows from a graph into a packed picture; columns and rows beyond the picture are dropped.
class PackedRowWriter {
public:
    PackedRowWriter(Foundation::Image& image, int width, unsigned rows);

    [[nodiscard]] zimg_image_buffer buffer() const { return m_planar.buffer(); }
    [[nodiscard]] ZimgCallback callback() { return {&PackedRowWriter::pack, this}; }

private:
    static int pack(void* user, unsigned y, unsigned left, unsigned right);

    Foundation::Image& m_image;
    PlanarRows m_planar;
};

} // namespace Frames
