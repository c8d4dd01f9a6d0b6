#include <Analysis/Aesthetics.h>
#include <Analysis/BestShotSelector.h>

#include <algorithm>
#include <cmath>

namespace Analysis {

Aesthetics::Aesthetics(const std::filesystem::path& file)
    : m_brisque(file) {}

Aesthetics::Measures Aesthetics::measures(const Foundation::Image& image) const {
    const GreyImage grey = greyOf(image);
    const Brisque::Features features = Brisque::features(grey);
    return {tonesOf(image), detailOf(image, grey), m_brisque.score(features), features[Brisque::coarseVariance]};
}

double Aesthetics::score(const Measures& measures) {
    const auto& [tones, detail, brisque, texture] = measures;
    const double sharpness = BestShotSelector::sharpness(detail.variance);
    // Independent noise adds 4·4 + 4·1 times its own variance to that of the Laplacian.
    const double trueVariance = std::max(0.0, detail.variance - 20 * detail.noise * detail.noise);
    const double sharpnessByNoise = sharpness - BestShotSelector::sharpness(trueVariance);
    const double fineness = std::log10(1 + detail.variance);
    // Photos have about as much detail at half their size; more than that, at full size, is grain.
    const double grain = std::max(0.0, fineness - std::log10(1 + detail.varianceAtHalfSize) - 0.3);
    constexpr double goodBrightness = 0.45;
    const double brightness = tones.brightness - goodBrightness;

    // Fitted.
    double sum = 2.68;
    // Sharp, and in all directions.
    sum += 1.11 * fineness - 2.24 * sharpness + 0.51 * detail.evenness;
    // Free of noise.
    sum -= 15.57 * sharpnessByNoise + 0.61 * std::log2(1 + detail.colourNoise) + 11.31 * grain + 3.98 * texture +
           0.0172 * brisque;
    // Well exposed.
    sum -= 3.35 * (1 - tones.highlights) + 1.18 * tones.shadows + 0.24 * tones.burnt + 0.19 * tones.crushed +
           3.5 * std::max(0.0, brightness) + 1.32 * std::max(0.0, -brightness) + 8.25 * tones.contrast -
           7.46 * tones.highlightsFade;
    return 1 / (1 + std::exp(-sum));
}

double Aesthetics::score(const Foundation::Image& image) const {
    if (std::min(image.width, image.height) < Brisque::smallestSide)
        return 0.5;
    return score(measures(image));
}

} // namespace Analysis
