#pragma once

#include <Analysis/FaceFinder.h>
#include <Analysis/ImageQualityScoring.h>

namespace Analysis {

/// Judges by Aesthetics and by the faces in the image.
class VisionQualityScorer final : public ImageQualityScoring {
public:
    /// Borrows the finder for its lifetime.
    explicit VisionQualityScorer(const FaceFinder& finder);

    /// When the networks fail, there are no faces.
    [[nodiscard]] ImageQuality quality(const Foundation::Image& image) override;

private:
    const FaceFinder& m_finder;
};

} // namespace Analysis
