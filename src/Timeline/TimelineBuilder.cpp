// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Timeline/ChapterWalk.h>
#include <Timeline/TimelineBuilder.h>

#include <algorithm>

namespace Timeline::TimelineBuilder {

namespace {

/// How the photos follow each other.
struct Pace {
    double photoDuration;
    double crossfade;
    /// From one photo's start to the next one's.
    double step;
};

Pace paceOf(const EffectiveSettings& settings) {
    const double photoDuration = settings.photoDuration > 0 ? settings.photoDuration : 4.0;
    const double crossfade = std::max(0.0, std::min(photoDuration * 0.5, settings.crossfade));
    return {.photoDuration = photoDuration, .crossfade = crossfade, .step = photoDuration - crossfade};
}

} // namespace

std::optional<std::string> locationLabel(const ProjectModel::PhotoItem& photo) {
    if (!photo.location)
        return std::nullopt;
    const auto& [city, country, provenance] = *photo.location;
    const std::string label =
        city && country ? *city + ", " + *country : city.value_or(country.value_or(std::string{}));
    return label.empty() ? std::nullopt : std::optional{label};
}

OverlaySpec overlay(const ProjectModel::PhotoItem& photo, bool captionsEnabled,
                    const std::optional<std::string>& chapterTitle) {
    return {
        .locationText = locationLabel(photo),
        .isApproximate = photo.location && photo.location->provenance == ProjectModel::Provenance::inferred,
        .caption = captionsEnabled ? photo.caption : std::nullopt,
        .chapterTitle = chapterTitle,
    };
}

SlideshowTimeline build(const ProjectModel::Project& project, const EffectiveSettings& settings) {
    const Pace pace = paceOf(settings);
    SlideshowTimeline timeline;
    double time = 0;
    bool hasPhoto = false;
    ChapterWalk chapters;

    for (const ProjectModel::PhotoItem& photo : project.photos) {
        if (!photo.isSelected)
            continue;
        bool mayCrossfade = true;
        std::optional<std::string> chapterTitle;
        if (const std::optional<std::string> label = chapters.enter(photo)) {
            if (settings.chapterStyle == ProjectModel::ChapterStyle::overlay) {
                chapterTitle = label;
            } else {
                // The card begins where the photo before it ends, so that they never overlap.
                if (hasPhoto)
                    time += pace.crossfade;
                timeline.items.emplace_back(
                    ChapterSegment{.title = *label, .start = time, .duration = settings.chapterDuration});
                time += settings.chapterDuration;
                mayCrossfade = false;
            }
        }
        timeline.items.emplace_back(PhotoSegment{
            .photoID = photo.id,
            .start = time,
            .duration = pace.photoDuration,
            .crossfadesFromPrevious = hasPhoto && mayCrossfade,
            .kenBurns =
                settings.kenBurnsEnabled ? std::optional{KenBurns::transform(photo.id)} : std::nullopt,
            .overlay = overlay(photo, settings.captionsEnabled, chapterTitle),
        });
        time += pace.step;
        hasPhoto = true;
    }

    if (!hasPhoto)
        return timeline;
    timeline.totalDuration = pace.photoDuration + (time - pace.step);
    if (project.music) {
        timeline.audio = AudioPlan{.musicBookmark = project.music->bookmark,
                                   .totalDuration = timeline.totalDuration,
                                   .fadeIn = settings.musicFadeIn,
                                   .fadeOut = settings.musicFadeOut};
    }
    return timeline;
}

} // namespace Timeline::TimelineBuilder
