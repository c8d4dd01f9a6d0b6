// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/VisionFeaturePrinter.h>

#include <cmath>
#include <stdexcept>

namespace Analysis {

namespace {

/// Embeddings whose angle has a greater cosine than this show one scene. Of labelled photos, the least alike
/// of one scene have 0.78 and the most alike of two scenes 0.73; bench-analysis prints how well the cut parts
/// them.
constexpr double sameSceneCosine = 0.76;

/// The length of all prints. Two of length r with cosine c lie r·sqrt(2 - 2c) apart, which is to be 0.5 at
/// the cut.
const double printLength = 0.5 / std::sqrt(2 - 2 * sameSceneCosine);

} // namespace

VisionFeaturePrinter::VisionFeaturePrinter(const VisionNetwork& network)
    : m_network(network) {}

std::optional<std::vector<float>> VisionFeaturePrinter::features(const Foundation::Image& image) {
    try {
        std::vector<float> print = m_network.look(image).embedding;
        double squares = 0;
        for (const float value : print)
            squares += static_cast<double>(value) * static_cast<double>(value);
        if (!std::isfinite(squares) || squares <= 0)
            return std::nullopt;
        const double factor = printLength / std::sqrt(squares);
        for (float& value : print)
            value = static_cast<float>(static_cast<double>(value) * factor);
        return print;
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

} // namespace Analysis
