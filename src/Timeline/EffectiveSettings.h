// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/ChapterStyle.h>

namespace Timeline {

/// Playback settings after project and user defaults are merged. All durations in seconds.
struct EffectiveSettings {
    /// Time each photo is on screen, its overlaps included.
    double photoDuration = 5.0;
    /// Requested length of the dissolve between consecutive photos.
    double crossfade = 0.75;
    double chapterDuration = 3.0;
    double musicFadeIn = 2.0;
    double musicFadeOut = 3.0;
    bool kenBurnsEnabled = true;
    /// Show the photo's caption in its overlay.
    bool captionsEnabled = true;
    ProjectModel::ChapterStyle chapterStyle = ProjectModel::ChapterStyle::card;

    friend bool operator==(const EffectiveSettings&, const EffectiveSettings&) = default;
};

} // namespace Timeline
