// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/ProjectTimeline.h>
#include <Roamly/Document/PlaybackSettings.h>
#include <Roamly/Document/ProjectStore.h>
#include <Roamly/Platform/SettingsStore.h>
#include <Timeline/TimelineBuilder.h>

namespace CommandLine {

ProjectTimeline loadTimeline(const std::filesystem::path& projectFile) {
    ProjectTimeline loaded;
    loaded.project = Document::ProjectStore::load(projectFile).project;
    loaded.settings = Document::effectiveSettings(loaded.project.settings, Platform::SettingsStore{}.load());
    loaded.timeline = Timeline::TimelineBuilder::build(loaded.project, loaded.settings);
    return loaded;
}

} // namespace CommandLine
