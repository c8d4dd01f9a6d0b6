// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Frames/FrameSize.h>
#include <Frames/YuvFrame.h>
#include <Timeline/KenBurns.h>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace Frames {

/// A decoded photo converted once into planes as frames are made of. Immutable. Any thread.
class PreparedPhoto;

/// Nothing for an empty image. Any thread.
[[nodiscard]] std::shared_ptr<const PreparedPhoto> preparePhoto(const Foundation::Image& photo);

/// Text and shades to lay over a frame: 8 bits a channel R G B A, colour premultiplied by alpha, sRGB, no row
/// padding; placed with its top-left corner at (x, y) of the frame and clipped to it.
struct OverlayBitmap {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    /// width * height * 4 bytes.
    std::vector<std::uint8_t> pixels;
};

/// Overlay bitmaps converted once into blendable planes. Immutable. Any thread.
class PreparedOverlay;

/// The bitmaps are blended in the order given, each only where it is not clear. Throws std::invalid_argument
/// when a bitmap has fewer pixels than its size says. Any thread.
[[nodiscard]] std::shared_ptr<const PreparedOverlay> prepareOverlay(std::span<const OverlayBitmap> bitmaps,
                                                                    FrameSize size);

/// One photo (or none) on a frame: fitted inside it (letterboxed, never cropped), scaled by `scale` about the
/// frame's centre and displaced by `offset`, whose both components count in frame widths; positive moves
/// right and down. Its edges are anti-aliased: a pixel that the photo covers in part shows that part of it.
struct PhotoLayer {
    std::shared_ptr<const PreparedPhoto> photo;
    Timeline::KenBurnsTransform::Sample motion;
    /// 0…1.
    double opacity = 1;
};

/// Draws the layers in order over black, each blended by its opacity where it covers the frame, then the
/// overlay (which may be absent). Deterministic. Any thread. Throws std::invalid_argument when the size is
/// not positive or not the overlay's.
[[nodiscard]] std::shared_ptr<YuvFrame> compose(FrameSize size, std::span<const PhotoLayer> layers,
                                                const PreparedOverlay* overlay);

} // namespace Frames
