#include <Roamly/CommandLine/ProjectTimeline.h>
#include <Roamly/PlaybackSettings.h>
#include <Roamly/ProjectStore.h>
#include <Roamly/SettingsStore.h>
#include <Timeline/TimelineBuilder.h>

namespace CommandLine {

ProjectTimeline loadTimeline(const std::filesystem::path& projectFile) {
    ProjectTimeline loaded;
    loaded.project = Roamly::ProjectStore::load(projectFile).project;
    loaded.settings = Roamly::effectiveSettings(loaded.project.settings, Roamly::SettingsStore{}.load());
    loaded.timeline = Timeline::TimelineBuilder::build(loaded.project, loaded.settings);
    return loaded;
}

} // namespace CommandLine
