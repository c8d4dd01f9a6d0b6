// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <zimg.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Frames {

/// Called by a graph for each row that it is about to read or has written.
struct ZimgCallback {
    zimg_filter_graph_callback function = nullptr;
    void* user = nullptr;
};

/// One zimg filter graph. Private to this module: the only place, with ZimgGraph.cpp, that knows the
/// library's calling conventions.
class ZimgGraph {
public:
    /// Bicubic with b = 0, c = 1/2: keeps an unscaled, unmoved picture as it is.
    [[nodiscard]] static zimg_graph_builder_params defaultParameters();
    /// 8-bit planes of the given size, one component, limited range.
    [[nodiscard]] static zimg_image_format planeFormat(int width, int height);
    /// 8-bit Y, Cb, Cr, BT.709, limited range, chroma left-sited where it is subsampled.
    [[nodiscard]] static zimg_image_format yuvFormat(int width, int height, bool halvedChroma);
    /// 8-bit planar R, G, B with the primaries and transfer of `yuvFormat`, so that only the matrix lies
    /// between.
    [[nodiscard]] static zimg_image_format rgbFormat(int width, int height);

    /// Throws std::runtime_error with the library's words.
    ZimgGraph(const zimg_image_format& source, const zimg_image_format& target,
              const zimg_graph_builder_params& parameters);

    /// Rows that a source or target buffer must hold when rows are handed over by a callback; a power of two.
    [[nodiscard]] unsigned sourceRows() const;
    [[nodiscard]] unsigned targetRows() const;

    /// Throws std::runtime_error with the library's words.
    void process(const zimg_image_buffer_const& source, const zimg_image_buffer& target,
                 ZimgCallback unpack = {}, ZimgCallback pack = {}) const;

private:
    struct Free {
        void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
    };
    std::unique_ptr<zimg_filter_graph, Free> m_graph;
    unsigned m_sourceHeight;
    unsigned m_targetHeight;
};

} // namespace Frames
