// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Captioning {

/// Names what a picture shows. Never fails: no tags is an answer.
class SceneTagging {
public:
    virtual ~SceneTagging() = default;

    /// Short English labels, the likeliest first.
    [[nodiscard]] virtual std::vector<std::string> tags(const Foundation::Image& image) const = 0;
};

/// The tags of one picture, made when somebody asks for them: a network has to look at the picture, and most
/// back ends have eyes of their own. Owner's thread.
class SceneTags {
public:
    /// None.
    SceneTags() = default;
    /// Borrows both.
    SceneTags(const SceneTagging& tagger, const Foundation::Image& image)
        : m_tagger(&tagger)
        , m_image(&image) {}

    /// Asks the tagger the first time, and remembers.
    [[nodiscard]] const std::vector<std::string>& get() const;

private:
    const SceneTagging* m_tagger = nullptr;
    const Foundation::Image* m_image = nullptr;
    mutable std::optional<std::vector<std::string>> m_tags;
};

/// One answer of a whole-image classifier.
struct ClassObservation {
    /// Words joined by underscores.
    std::string identifier;
    /// 0…1.
    float confidence = 0;
};

/// Classifies a picture; nothing when that fails.
using ImageClassifier = std::function<std::optional<std::vector<ClassObservation>>(const Foundation::Image&)>;

/// Turns a classifier's answers into tags.
class VisionSceneTagger : public SceneTagging {
public:
    /// Keeps labels of at least `confidenceThreshold`, and of those the `maxTags` likeliest.
    VisionSceneTagger(float confidenceThreshold, int maxTags, ImageClassifier classify);

    [[nodiscard]] std::vector<std::string> tags(const Foundation::Image& image) const override;

private:
    float m_confidenceThreshold;
    int m_maxTags;
    ImageClassifier m_classify;
};

} // namespace Captioning
