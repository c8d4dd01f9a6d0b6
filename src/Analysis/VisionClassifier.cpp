// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/VisionClassifier.h>

#include <stdexcept>

namespace Analysis {

VisionClassifier::VisionClassifier(const VisionNetwork& network, const ImageLabels& labels)
    : m_network(&network)
    , m_labels(&labels) {}

std::optional<std::vector<ImageLabel>> VisionClassifier::operator()(const Foundation::Image& image) const {
    try {
        return m_labels->labels(m_network->look(image).classScores);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

} // namespace Analysis
