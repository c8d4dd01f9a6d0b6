// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Timeline/MusicFit.h>
#include <Timeline/TimelineBuilder.h>

#include <algorithm>
#include <cmath>

namespace Timeline {

namespace {

constexpr double leastPhotoDuration = 2.0;

double filmLength(const ProjectModel::Project& project, EffectiveSettings settings, double photoDuration) {
    settings.photoDuration = photoDuration;
    return TimelineBuilder::build(project, settings).totalDuration;
}

} // namespace

std::optional<MusicFit> fitToMusic(const ProjectModel::Project& project, const EffectiveSettings& settings,
                                   double musicSeconds) {
    if (!std::isfinite(musicSeconds) || musicSeconds <= 0)
        return std::nullopt;
    const double leastLength = filmLength(project, settings, leastPhotoDuration);
    if (leastLength <= 0)
        return std::nullopt;
    // A hair's breadth of tolerance, so that music that fits exactly is not played twice.
    const double plays = std::max(1.0, std::ceil(leastLength / musicSeconds - 1e-9));
    if (plays > 10'000)
        return std::nullopt;
    const double target = musicSeconds * plays;

    // The film's length is made of two straight lines over the photos' duration, as the builder shortens the
    // dissolve of photos that are shown for less than twice its length; two points on a line give the
    // duration.
    const double knee = std::max(2 * settings.crossfade, leastPhotoDuration);
    const double kneeLength = filmLength(project, settings, knee);
    const bool isAbove = target >= kneeLength;
    const double from = isAbove ? knee : leastPhotoDuration;
    const double to = isAbove ? knee + 1 : knee;
    const double fromLength = isAbove ? kneeLength : leastLength;
    const double toLength = filmLength(project, settings, to);
    if (toLength <= fromLength)
        return MusicFit{.photoDuration = from, .plays = static_cast<int>(plays)};
    const double duration = from + (target - fromLength) * (to - from) / (toLength - fromLength);
    return MusicFit{.photoDuration = duration, .plays = static_cast<int>(plays)};
}

} // namespace Timeline
