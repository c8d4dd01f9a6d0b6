// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/VisionQualityScorer.h>

#include <algorithm>
#include <stdexcept>

namespace Analysis {

VisionQualityScorer::VisionQualityScorer(const Aesthetics& aesthetics, const FaceFinder& finder)
    : m_aesthetics(aesthetics)
    , m_finder(finder) {}

ImageQuality VisionQualityScorer::quality(const Foundation::Image& image) {
    ImageQuality quality;
    quality.aesthetics = m_aesthetics.score(image);
    try {
        const auto faces = m_finder.faces(image);
        quality.hasOpenEyedFace = std::any_of(
            faces.begin(), faces.end(), [&](const Face& face) { return m_finder.showsLeftEye(image, face); });
    } catch (const std::runtime_error&) {
        quality.hasOpenEyedFace = false;
    }
    return quality;
}

} // namespace Analysis
