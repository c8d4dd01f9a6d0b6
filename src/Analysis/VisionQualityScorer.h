// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/Aesthetics.h>
#include <Analysis/FaceFinder.h>
#include <Analysis/ImageQualityScoring.h>

namespace Analysis {

/// Judges by Aesthetics and by the faces in the image.
class VisionQualityScorer final : public ImageQualityScoring {
public:
    /// Borrows both for its lifetime.
    VisionQualityScorer(const Aesthetics& aesthetics, const FaceFinder& finder);

    /// When the networks fail, there are no faces.
    [[nodiscard]] ImageQuality quality(const Foundation::Image& image) override;

private:
    const Aesthetics& m_aesthetics;
    const FaceFinder& m_finder;
};

} // namespace Analysis
