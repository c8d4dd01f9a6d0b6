// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Frames/Compositor.h>

#include <span>
#include <vector>

namespace Frames::Testing {

struct ReferenceLayer {
    const Foundation::Image* photo = nullptr;
    double scale = 1;
    double offsetX = 0;
    double offsetY = 0;
    double opacity = 1;
};

/// Sample values in rows without padding.
struct ReferencePlane {
    int width = 0;
    int height = 0;
    std::vector<double> values;

    [[nodiscard]] double at(int x, int y) const {
        return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

/// What a frame must hold, in real numbers: slowly, sample by sample, straight from the definition.
[[nodiscard]] std::vector<ReferencePlane> renderReference(FrameSize size,
                                                          std::span<const ReferenceLayer> layers,
                                                          std::span<const OverlayBitmap> overlay = {});

} // namespace Frames::Testing
