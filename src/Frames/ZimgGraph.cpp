// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/FrameMemory.h>
#include <Frames/ZimgGraph.h>

#include <algorithm>
#include <array>
#include <bit>
#include <stdexcept>
#include <string>

namespace Frames {

namespace {

void check(bool ok) {
    if (ok)
        return;
    std::array<char, 256> text{};
    zimg_get_last_error(text.data(), text.size() - 1);
    throw std::runtime_error("The picture could not be scaled (" + std::string(text.data()) + ").");
}

zimg_image_format format(int width, int height) {
    zimg_image_format result;
    zimg_image_format_default(&result, ZIMG_API_VERSION);
    result.width = static_cast<unsigned>(width);
    result.height = static_cast<unsigned>(height);
    result.pixel_type = ZIMG_PIXEL_BYTE;
    return result;
}

} // namespace

zimg_graph_builder_params ZimgGraph::defaultParameters() {
    zimg_graph_builder_params result;
    zimg_graph_builder_params_default(&result, ZIMG_API_VERSION);
    result.resample_filter = ZIMG_RESIZE_BICUBIC;
    result.filter_param_a = 0;
    result.filter_param_b = 0.5;
    result.resample_filter_uv = ZIMG_RESIZE_BICUBIC;
    result.filter_param_a_uv = 0;
    result.filter_param_b_uv = 0.5;
    // Not the 64-byte variety: the AVX-512 loops of zimg 3.0.4 scale some widths wrongly.
    result.cpu_type = ZIMG_CPU_AUTO;
    return result;
}

zimg_image_format ZimgGraph::planeFormat(int width, int height) {
    zimg_image_format result = format(width, height);
    result.color_family = ZIMG_COLOR_GREY;
    result.pixel_range = ZIMG_RANGE_LIMITED;
    return result;
}

zimg_image_format ZimgGraph::yuvFormat(int width, int height, bool halvedChroma) {
    zimg_image_format result = format(width, height);
    result.color_family = ZIMG_COLOR_YUV;
    result.pixel_range = ZIMG_RANGE_LIMITED;
    result.matrix_coefficients = ZIMG_MATRIX_BT709;
    result.transfer_characteristics = ZIMG_TRANSFER_BT709;
    result.color_primaries = ZIMG_PRIMARIES_BT709;
    result.chroma_location = ZIMG_CHROMA_LEFT;
    result.subsample_w = halvedChroma ? 1 : 0;
    result.subsample_h = halvedChroma ? 1 : 0;
    return result;
}

zimg_image_format ZimgGraph::rgbFormat(int width, int height) {
    zimg_image_format result = format(width, height);
    result.color_family = ZIMG_COLOR_RGB;
    result.pixel_range = ZIMG_RANGE_FULL;
    result.matrix_coefficients = ZIMG_MATRIX_RGB;
    result.transfer_characteristics = ZIMG_TRANSFER_BT709;
    result.color_primaries = ZIMG_PRIMARIES_BT709;
    return result;
}

ZimgGraph::ZimgGraph(const zimg_image_format& source, const zimg_image_format& target,
                     const zimg_graph_builder_params& parameters)
    : m_graph(zimg_filter_graph_build(&source, &target, &parameters))
    , m_sourceHeight(source.height)
    , m_targetHeight(target.height) {
    check(m_graph != nullptr);
}

unsigned ZimgGraph::sourceRows() const {
    unsigned rows = 0;
    check(zimg_filter_graph_get_input_buffering(m_graph.get(), &rows) == ZIMG_ERROR_SUCCESS);
    return std::bit_ceil(std::min(rows, m_sourceHeight));
}

unsigned ZimgGraph::targetRows() const {
    unsigned rows = 0;
    check(zimg_filter_graph_get_output_buffering(m_graph.get(), &rows) == ZIMG_ERROR_SUCCESS);
    return std::bit_ceil(std::min(rows, m_targetHeight));
}

void ZimgGraph::process(const zimg_image_buffer_const& source, const zimg_image_buffer& target,
                        ZimgCallback unpack, ZimgCallback pack) const {
    std::size_t scratchSize = 0;
    check(zimg_filter_graph_get_tmp_size(m_graph.get(), &scratchSize) == ZIMG_ERROR_SUCCESS);
    const AlignedMemory scratch = allocateAligned(pixelAligned(scratchSize + 1));
    check(zimg_filter_graph_process(m_graph.get(), &source, &target, scratch.get(), unpack.function,
                                    unpack.user, pack.function, pack.user) == ZIMG_ERROR_SUCCESS);
}

} // namespace Frames
