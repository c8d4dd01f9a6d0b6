// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

namespace Analysis {

struct ImageQuality {
    /// 0…1.
    double aesthetics = 0.5;
    /// Whether a face shows its left eye.
    bool hasOpenEyedFace = false;
};

/// Judges what an image looks like.
class ImageQualityScoring {
public:
    virtual ~ImageQualityScoring() = default;

    /// Never fails. Worker's thread.
    [[nodiscard]] virtual ImageQuality quality(const Foundation::Image& image) = 0;
};

} // namespace Analysis
