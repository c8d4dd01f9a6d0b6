// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Frames/Compositor.h>
#include <Frames/YuvFrame.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Frames {

/// All bitmaps of an overlay flattened, in the frame's own planes and only where they are not clear.
class PreparedOverlay {
public:
    PreparedOverlay(std::span<const OverlayBitmap> bitmaps, FrameSize size);

    /// The frame must have the size that the overlay was made for.
    void drawOn(YuvFrame& frame) const;

    [[nodiscard]] FrameSize size() const { return m_size; }

private:
    /// A piece of one row. Where the colour is black, `paintAt` is `noPaint`: alpha says it all.
    struct Span {
        int y = 0;
        int x = 0;
        int count = 0;
        std::size_t alphaAt = 0;
        std::size_t paintAt = 0;
    };
    static constexpr std::size_t noPaint = static_cast<std::size_t>(-1);

    /// One alpha for one or two components.
    struct Plane {
        std::vector<Span> spans;
        std::vector<std::uint8_t> alpha;
        std::array<std::vector<std::uint16_t>, 2> paint;

        void shrinkToFit();
    };

    class Builder;

    static void draw(const Plane& overlay, std::size_t component, YuvFrame& frame, int plane);

    FrameSize m_size;
    Plane m_luma;
    Plane m_chroma;
};

} // namespace Frames
