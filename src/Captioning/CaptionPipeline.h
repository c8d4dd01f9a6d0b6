// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/CaptionError.h>
#include <Captioning/CaptionGenerating.h>
#include <Captioning/SceneTagging.h>
#include <Foundation/Image.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <functional>
#include <map>
#include <optional>
#include <stop_token>
#include <string>

namespace Captioning {

/// What one run brought.
struct CaptionRun {
    /// Only photos that got a caption that is not blank.
    std::map<Foundation::Uuid, std::string> captions;
    std::optional<CaptionError> firstFailure;
    /// Eligible photos when the run began, not the ones it reached.
    int attempted = 0;
    /// The run stopped before its last photo.
    bool cancelled = false;

    friend bool operator==(const CaptionRun&, const CaptionRun&) = default;
};

struct CaptionProgress {
    /// Photos finished, counting failures and photos without pixels.
    int completed = 0;
    int total = 0;

    friend bool operator==(const CaptionProgress&, const CaptionProgress&) = default;
};

/// Captions a project's photos one after another, so that a local model server or a paid service sees one
/// request at a time. Writes nothing into the project.
class CaptionPipeline {
public:
    using ImageLoader = std::function<std::optional<Foundation::Image>(const ProjectModel::PhotoRef&)>;

    /// Tagger and generator are borrowed and must outlive the pipeline.
    CaptionPipeline(const SceneTagging& tagger, const CaptionGenerating& generator, ImageLoader image);

    /// Captions the selected photos whose caption is not the user's. A photo's failure never ends the run;
    /// cancellation does, and keeps what there is. `progress` is called in order, once for each finished
    /// photo.
    [[nodiscard]] CaptionRun generate(const ProjectModel::Project& project,
                                      const std::function<void(const CaptionProgress&)>& progress = {},
                                      const std::stop_token& stop = {}) const;

private:
    const SceneTagging& m_tagger;
    const CaptionGenerating& m_generator;
    ImageLoader m_image;
};

} // namespace Captioning
