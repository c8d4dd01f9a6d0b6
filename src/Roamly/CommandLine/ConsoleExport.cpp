// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <Roamly/CommandLine/Awaiting.h>
#include <Roamly/CommandLine/ConsoleExport.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/PlaybackSettings.h>
#include <Roamly/Jobs/ExportController.h>
#include <Roamly/Platform/SlideshowFrames.h>

namespace CommandLine {

std::vector<Option> exportOptions() {
    return {{.name = "--output",
             .value = "FILE.mov",
             .help = "the movie to write; one that exists is replaced",
             .shortName = 'o'},
            {.name = "--resolution",
             .value = "SIZE",
             .help = "p1080 or p2160 (4K); otherwise as in the settings",
             .choices = {"p1080", "p2160"}},
            {.name = "--codec",
             .value = "CODEC",
             .help = "h264 or hevc; otherwise as in the settings",
             .choices = {"h264", "hevc"}}};
}

Export::ExportPreset exportPreset(const Arguments& arguments, const Document::AppSettings& settings) {
    Export::ExportPreset preset{settings.exportResolution, settings.exportCodec};
    if (const std::optional<std::string> typed = arguments.value("--resolution"))
        preset.resolution = Values::resolution(*typed);
    if (const std::optional<std::string> typed = arguments.value("--codec"))
        preset.codec = Values::codec(*typed);
    return preset;
}

std::set<Foundation::Uuid> exportMovie(const ProjectModel::Project& project,
                                       const Document::AppSettings& settings, Export::ExportPreset preset,
                                       const std::filesystem::path& file, const Invocation& invocation) {
    Jobs::ExportController* running = nullptr;
    const auto show = [&] {
        const Jobs::ExportController::State& state = running->state();
        // Programs get the exporter's own reports only.
        const bool isShown =
            !invocation.console.isJson() || state.stageText != Jobs::ExportController::preparing;
        if (state.isExporting && isShown)
            invocation.console.progress(state.stageText, state.progress, [&](Foundation::JsonWriter& json) {
                JsonForms::write(json, Export::ExportProgress{state.progress, state.stageText});
            });
    };
    Jobs::ActionQueue queue;
    Jobs::ExportController controller{queue.executor(), Platform::slideshowFrames, show};
    running = &controller;
    controller.exportMovie(project, effectiveSettings(project.settings, settings), preset, file);
    if (const std::exception_ptr unshown = await(
            queue, invocation.stop, [&] { return !controller.state().isExporting; },
            [&] { controller.cancel(); }))
        std::rethrow_exception(unshown);

    const Jobs::ExportController::State& state = controller.state();
    if (state.wasCancelled)
        throw Interrupted(*state.errorText);
    if (state.errorText)
        throw Failure(*state.errorText);
    invocation.console.say("Saved " + Foundation::displayText(file) + ".");
    if (const auto sentence = Jobs::ExportController::failedPhotosSentence(state.failedPhotoCount()))
        invocation.console.say(*sentence);
    return state.failedPhotoIDs;
}

} // namespace CommandLine
