// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/PlaybackSettings.h>

namespace Document {

Timeline::EffectiveSettings effectiveSettings(const ProjectModel::ProjectSettings& project,
                                              const AppSettings& user) {
    // The lengths of dissolves, cards and fades are the same in every slideshow and stay at their defaults.
    Timeline::EffectiveSettings settings;
    settings.photoDuration = project.photoDuration.value_or(user.photoDuration);
    settings.kenBurnsEnabled = project.kenBurnsEnabled.value_or(user.kenBurnsEnabled);
    settings.captionsEnabled = project.captionsEnabled.value_or(user.captionsEnabled);
    settings.chapterStyle = project.chapterStyle.value_or(user.chapterStyle);
    return settings;
}

} // namespace Document
