// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <optional>
#include <vector>

namespace Analysis {

/// Turns images into vectors whose Euclidean distance says how much alike two images are: below 0.5 for shots
/// of one scene, above for different scenes.
class FeaturePrinting {
public:
    virtual ~FeaturePrinting() = default;

    /// Always of the same length; nothing when the image cannot be printed. Worker's thread.
    [[nodiscard]] virtual std::optional<std::vector<float>> features(const Foundation::Image& image) = 0;
};

} // namespace Analysis
