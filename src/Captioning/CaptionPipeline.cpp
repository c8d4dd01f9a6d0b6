// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionPipeline.h>
#include <Foundation/Cancellation.h>
#include <Foundation/Text.h>

#include <utility>
#include <vector>

namespace Captioning {

namespace {

std::vector<const ProjectModel::PhotoItem*> eligiblePhotos(const ProjectModel::Project& project) {
    std::vector<const ProjectModel::PhotoItem*> photos;
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        if (photo.isSelected && photo.captionProvenance != ProjectModel::Provenance::user)
            photos.push_back(&photo);
    }
    return photos;
}

} // namespace

CaptionPipeline::CaptionPipeline(const SceneTagging& tagger, const CaptionGenerating& generator,
                                 ImageLoader image)
    : m_tagger(tagger)
    , m_generator(generator)
    , m_image(std::move(image)) {}

CaptionRun CaptionPipeline::generate(const ProjectModel::Project& project,
                                     const std::function<void(const CaptionProgress&)>& progress,
                                     const std::stop_token& stop) const {
    const std::vector<const ProjectModel::PhotoItem*> photos = eligiblePhotos(project);
    CaptionRun run;
    run.attempted = static_cast<int>(photos.size());

    const auto noteFailure = [&run](CaptionError error) {
        if (!run.firstFailure)
            run.firstFailure = std::move(error);
    };

    int completed = 0;
    for (const ProjectModel::PhotoItem* photo : photos) {
        if (stop.stop_requested()) {
            run.cancelled = true;
            return run;
        }
        if (const std::optional<Foundation::Image> image = m_image(photo->source)) {
            try {
                std::string caption = m_generator.caption(*image, SceneTags{m_tagger, *image}, stop);
                if (!Foundation::trimmed(caption).empty())
                    run.captions.insert_or_assign(photo->id, std::move(caption));
            } catch (const Foundation::Cancelled&) {
                run.cancelled = true;
                return run;
            } catch (const std::exception& error) {
                // A request that was torn down by the cancellation is not a failure of the backend.
                if (stop.stop_requested()) {
                    run.cancelled = true;
                    return run;
                }
                if (const auto* captionError = dynamic_cast<const CaptionError*>(&error))
                    noteFailure(*captionError);
                else
                    noteFailure(CaptionError{TransportFailure{error.what()}});
            }
        }
        ++completed;
        if (progress)
            progress({completed, run.attempted});
    }
    return run;
}

} // namespace Captioning
