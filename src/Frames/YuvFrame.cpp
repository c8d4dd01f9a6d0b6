// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/FrameMemory.h>
#include <Frames/PackedRows.h>
#include <Frames/YuvFrame.h>
#include <Frames/ZimgGraph.h>

#include <cstring>
#include <stdexcept>

namespace Frames {

YuvFrame::YuvFrame(FrameSize size)
    : m_size(size) {
    if (size.width <= 0 || size.height <= 0)
        throw std::invalid_argument("a frame needs a positive size");
    std::array<std::size_t, 3> offsets{};
    std::size_t total = 0;
    for (std::size_t p = 0; p < 3; ++p) {
        // Whole pairs of luma samples, so that whoever reads the frame in blocks of 2 x 2 stays inside it.
        const auto samples = static_cast<std::size_t>(planeWidth(1)) * (p == 0 ? 2 : 1);
        const auto rows = static_cast<std::size_t>(planeHeight(1)) * (p == 0 ? 2 : 1);
        const std::size_t stride = pixelAligned(samples);
        m_strides[p] = static_cast<std::ptrdiff_t>(stride);
        offsets[p] = total;
        total += stride * rows;
    }
    m_memory = {FrameMemory::take(total).release(), GiveBack{total}};
    for (std::size_t p = 0; p < 3; ++p)
        m_planes[p] = m_memory.get() + offsets[p];
}

void YuvFrame::GiveBack::operator()(std::uint8_t* memory) const {
    FrameMemory::giveBack(AlignedMemory(memory), size);
}

void YuvFrame::fillBlack() {
    for (int p = 0; p < 3; ++p)
        for (int y = 0; y < planeHeight(p); ++y)
            std::memset(plane(p) + y * stride(p), p == 0 ? 16 : 128, static_cast<std::size_t>(planeWidth(p)));
}

Foundation::Image toImage(const YuvFrame& frame) {
    const FrameSize size = frame.size();
    // Sizes round up to whole chroma samples; the surplus row and column are dropped again.
    const int width = frame.planeWidth(1) * 2;
    const int height = frame.planeHeight(1) * 2;
    const ZimgGraph graph(ZimgGraph::yuvFormat(width, height, true), ZimgGraph::rgbFormat(width, height),
                          ZimgGraph::defaultParameters());

    zimg_image_buffer_const source{};
    source.version = ZIMG_API_VERSION;
    for (int p = 0; p < 3; ++p)
        source.plane[p] = {frame.plane(p), frame.stride(p), ZIMG_BUFFER_MAX};

    Foundation::Image image;
    image.width = size.width;
    image.height = size.height;
    image.pixels.resize(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 3);
    PackedRowWriter writer(image, width, graph.targetRows());
    graph.process(source, writer.buffer(), {}, writer.callback());
    return image;
}

} // namespace Frames
