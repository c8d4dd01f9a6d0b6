// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Compositor.h>
#include <Frames/PackedRows.h>
#include <Frames/PreparedPhoto.h>
#include <Frames/ZimgGraph.h>

namespace Frames {

namespace {

/// Photos of up to this many pixels are smaller than any frame of a movie.
constexpr std::size_t fullChromaPixels = std::size_t{1024} * 1024;

int evenUp(int value) {
    return value + value % 2;
}

} // namespace

PreparedPhoto::PreparedPhoto(const Foundation::Image& image)
    : m_width(image.width)
    , m_height(image.height) {
    const bool halvedChroma =
        static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height) > fullChromaPixels;
    // 4:2:0 covers whole pairs of pixels.
    const int width = halvedChroma ? evenUp(m_width) : m_width;
    const int height = halvedChroma ? evenUp(m_height) : m_height;

    std::array<std::size_t, 3> offsets{};
    std::size_t total = 0;
    for (std::size_t p = 0; p < 3; ++p) {
        Plane& plane = m_planes[p];
        const bool halved = halvedChroma && p > 0;
        plane.width = halved ? width / 2 : width;
        plane.height = halved ? height / 2 : height;
        plane.grid = halved ? SampleGrid::halved() : SampleGrid::full();
        const std::size_t stride = pixelAligned(static_cast<std::size_t>(plane.width));
        plane.stride = static_cast<std::ptrdiff_t>(stride);
        offsets[p] = total;
        total += stride * static_cast<std::size_t>(plane.height);
    }
    m_memory = allocateAligned(total);

    zimg_image_buffer target{};
    target.version = ZIMG_API_VERSION;
    for (std::size_t p = 0; p < 3; ++p) {
        m_planes[p].samples = m_memory.get() + offsets[p];
        target.plane[p] = {m_memory.get() + offsets[p], m_planes[p].stride, ZIMG_BUFFER_MAX};
    }
    const ZimgGraph graph(ZimgGraph::rgbFormat(width, height),
                          ZimgGraph::yuvFormat(width, height, halvedChroma), ZimgGraph::defaultParameters());
    PackedRowReader reader(image, width, graph.sourceRows());
    graph.process(reader.buffer(), target, reader.callback());

    // The surplus column and row exist for the chroma alone.
    m_planes[0].width = m_width;
    m_planes[0].height = m_height;
}

std::shared_ptr<const PreparedPhoto> preparePhoto(const Foundation::Image& photo) {
    if (photo.isEmpty())
        return nullptr;
    return std::make_shared<const PreparedPhoto>(photo);
}

} // namespace Frames
