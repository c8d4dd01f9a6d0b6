// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/PackedRows.h>

#include <algorithm>

namespace Frames {

PlanarRows::PlanarRows(int width, unsigned rows)
    : m_stride(pixelAligned(static_cast<std::size_t>(width)))
    , m_rows(rows)
    , m_memory(allocateAligned(m_stride * rows * 3)) {}

std::uint8_t* PlanarRows::row(std::size_t component, unsigned y) const {
    return m_memory.get() + (component * m_rows + (y & (m_rows - 1))) * m_stride;
}

zimg_image_buffer PlanarRows::buffer() const {
    zimg_image_buffer result{};
    result.version = ZIMG_API_VERSION;
    for (std::size_t c = 0; c < 3; ++c)
        result.plane[c] = {row(c, 0), static_cast<std::ptrdiff_t>(m_stride), m_rows - 1};
    return result;
}

PackedRowReader::PackedRowReader(const Foundation::Image& image, int width, unsigned rows)
    : m_image(image)
    , m_planar(width, rows) {}

zimg_image_buffer_const PackedRowReader::buffer() const {
    const zimg_image_buffer planar = m_planar.buffer();
    zimg_image_buffer_const result{};
    result.version = ZIMG_API_VERSION;
    for (std::size_t c = 0; c < 3; ++c)
        result.plane[c] = {planar.plane[c].data, planar.plane[c].stride, planar.plane[c].mask};
    return result;
}

int PackedRowReader::unpack(void* user, unsigned y, unsigned left, unsigned right) {
    const auto& self = *static_cast<const PackedRowReader*>(user);
    const auto width = static_cast<std::size_t>(self.m_image.width);
    const std::uint8_t* packed = self.m_image.row(std::min(static_cast<int>(y), self.m_image.height - 1));
    std::uint8_t* const red = self.m_planar.row(0, y);
    std::uint8_t* const green = self.m_planar.row(1, y);
    std::uint8_t* const blue = self.m_planar.row(2, y);
    for (std::size_t x = left; x < std::min<std::size_t>(right, width); ++x) {
        red[x] = packed[x * 3];
        green[x] = packed[x * 3 + 1];
        blue[x] = packed[x * 3 + 2];
    }
    for (std::size_t x = std::max<std::size_t>(left, width); x < right; ++x) {
        red[x] = packed[(width - 1) * 3];
        green[x] = packed[(width - 1) * 3 + 1];
        blue[x] = packed[(width - 1) * 3 + 2];
    }
    return 0;
}

PackedRowWriter::PackedRowWriter(Foundation::Image& image, int width, unsigned rows)
    : m_image(image)
    , m_planar(width, rows) {}

int PackedRowWriter::pack(void* user, unsigned y, unsigned left, unsigned right) {
    const auto& self = *static_cast<const PackedRowWriter*>(user);
    if (y >= static_cast<unsigned>(self.m_image.height))
        return 0;
    const auto width = static_cast<std::size_t>(self.m_image.width);
    std::uint8_t* const packed = self.m_image.pixels.data() + y * width * 3;
    const std::uint8_t* const red = self.m_planar.row(0, y);
    const std::uint8_t* const green = self.m_planar.row(1, y);
    const std::uint8_t* const blue = self.m_planar.row(2, y);
    for (std::size_t x = left; x < std::min<std::size_t>(right, width); ++x) {
        packed[x * 3] = red[x];
        packed[x * 3 + 1] = green[x];
        packed[x * 3 + 2] = blue[x];
    }
    return 0;
}

} // namespace Frames
