#include <Roamly/CommandLine/Exporting.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/DisplayText.h>
#include <Roamly/ExportController.h>
#include <Roamly/PlaybackSettings.h>

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

Export::ExportPreset exportPreset(const Arguments& arguments, const Roamly::AppSettings& settings) {
    Export::ExportPreset preset{settings.exportResolution, settings.exportCodec};
    if (const std::optional<std::string> typed = arguments.value("--resolution"))
        preset.resolution = Values::resolution(*typed);
    if (const std::optional<std::string> typed = arguments.value("--codec"))
        preset.codec = Values::codec(*typed);
    return preset;
}

std::set<Foundation::Uuid> exportMovie(const ProjectModel::Project& project,
                                       const Roamly::AppSettings& settings, Export::ExportPreset preset,
                                       const std::filesystem::path& file, const Invocation& invocation) {
    Roamly::ExportController* running = nullptr;
    const auto show = [&] {
        const Roamly::ExportController::State& state = running->state();
        // Programs get the exporter's own reports only.
        const bool isShown =
            !invocation.console.isJson() || state.stageText != Roamly::ExportController::preparing;
        if (state.isExporting && isShown)
            invocation.console.progress(state.stageText, state.progress, [&](Foundation::JsonWriter& json) {
                JsonForms::write(json, Export::ExportProgress{state.progress, state.stageText});
            });
    };
    // Its reports come on the working thread while this one only waits.
    Roamly::ExportController controller{show};
    running = &controller;
    controller.exportProject(project, effectiveSettings(project.settings, settings), preset, file);
    {
        const std::stop_callback cancel{invocation.stop, [&] { controller.cancel(); }};
        controller.wait();
    }

    const Roamly::ExportController::State& state = controller.state();
    if (state.wasCancelled)
        throw Interrupted(*state.errorText);
    if (state.errorText)
        throw Failure(*state.errorText);
    invocation.console.say("Saved " + Roamly::displayText(file) + ".");
    if (const auto sentence = Roamly::ExportController::failedPhotosSentence(state.failedPhotoCount()))
        invocation.console.say(*sentence);
    return state.failedPhotoIDs;
}

} // namespace CommandLine
