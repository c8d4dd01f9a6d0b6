// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/SceneTagging.h>

#include <algorithm>
#include <utility>

namespace Captioning {

const std::vector<std::string>& SceneTags::get() const {
    if (!m_tags)
        m_tags = m_tagger ? m_tagger->tags(*m_image) : std::vector<std::string>{};
    return *m_tags;
}

VisionSceneTagger::VisionSceneTagger(float confidenceThreshold, int maxTags, ImageClassifier classify)
    : m_confidenceThreshold(confidenceThreshold)
    , m_maxTags(maxTags)
    , m_classify(std::move(classify)) {}

std::vector<std::string> VisionSceneTagger::tags(const Foundation::Image& image) const {
    if (!m_classify || m_maxTags <= 0)
        return {};
    std::optional<std::vector<ClassObservation>> observations = m_classify(image);
    if (!observations)
        return {};
    std::erase_if(*observations, [this](const ClassObservation& observation) {
        return !(observation.confidence >= m_confidenceThreshold);
    });
    std::ranges::stable_sort(*observations, std::ranges::greater{}, &ClassObservation::confidence);
    if (observations->size() > static_cast<std::size_t>(m_maxTags))
        observations->resize(static_cast<std::size_t>(m_maxTags));
    std::vector<std::string> tags;
    for (ClassObservation& observation : *observations) {
        std::ranges::replace(observation.identifier, '_', ' ');
        tags.push_back(std::move(observation.identifier));
    }
    return tags;
}

} // namespace Captioning
