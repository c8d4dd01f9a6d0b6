// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Compositor.h>
#include <Frames/PhotoDrawing.h>
#include <Frames/PreparedOverlay.h>

#include <stdexcept>

namespace Frames {

std::shared_ptr<YuvFrame> compose(FrameSize size, std::span<const PhotoLayer> layers,
                                  const PreparedOverlay* overlay) {
    if (overlay && overlay->size() != size)
        throw std::invalid_argument("an overlay belongs to frames of its own size");
    auto frame = std::make_shared<YuvFrame>(size);
    bool drawn = false;
    for (const PhotoLayer& layer : layers) {
        // Not a number counts as clear.
        if (!layer.photo || !(layer.opacity > 0))
            continue;
        if (drawn)
            drawOver(layer, *frame);
        else
            drawOverBlack(layer, *frame);
        drawn = true;
    }
    if (!drawn)
        frame->fillBlack();
    if (overlay)
        overlay->drawOn(*frame);
    return frame;
}

} // namespace Frames
