// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ConsoleExport.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/OffscreenApplication.h>
#include <Roamly/Document/OutputFile.h>
#include <Roamly/Document/ProjectStore.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const std::string& projectFile = invocation.arguments.positionals()[0];
    const std::filesystem::path output = invocation.arguments.requiredValue("--output");
    const Document::AppSettings settings = Platform::SettingsStore{}.load();
    const Export::ExportPreset preset = exportPreset(invocation.arguments, settings);
    Document::OutputFile::checkIsWritable(output);
    const ProjectModel::Project project = Document::ProjectStore::load(projectFile).project;
    Document::OutputFile::checkIsNoInput(output, projectFile, project);

    const OffscreenApplication application;
    const std::set<Foundation::Uuid> failed = exportMovie(project, settings, preset, output, invocation);
    invocation.console.report([&](Foundation::JsonWriter& json) {
        JsonForms::write(json.beginObject().key("failedPhotoIDs"), failed);
        json.endObject();
    });
    return ExitStatus::done;
}

} // namespace

Command exportCommand() {
    return {
        .name = "export",
        .summary = "make the movie of a project",
        .usages = {"PROJECT -o FILE.mov [--resolution SIZE] [--codec CODEC]"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = exportOptions(),
        .details = "Photos that can’t be loaded are black in the movie and are counted at the end. "
                   "Interrupted with\n"
                   "Ctrl-C, no movie is left.",
        .examples = {"roamly export Lisbon.roamly -o Lisbon.mov",
                     "roamly export Lisbon.roamly -o Lisbon-4K.mov --resolution p2160 --codec hevc"},
        .run = run,
    };
}

} // namespace CommandLine
