// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>
#include <Timeline/EffectiveSettings.h>

#include <optional>

namespace Timeline {

/// How long each photo has to be shown so that the film ends with the music.
struct MusicFit {
    /// Seconds; what `EffectiveSettings::photoDuration` is to be.
    double photoDuration = 0;
    /// How often the music is played from its beginning to its end.
    int plays = 1;

    friend bool operator==(const MusicFit&, const MusicFit&) = default;
};

/// Photos are shown for two seconds at least: music too short for that is played as often as it takes.
/// Nothing when no photo is in the film or the music has no length. `musicSeconds` is the length of one play.
[[nodiscard]] std::optional<MusicFit> fitToMusic(const ProjectModel::Project& project,
                                                 const EffectiveSettings& settings, double musicSeconds);

} // namespace Timeline
