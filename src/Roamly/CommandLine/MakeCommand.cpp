// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ConsoleAnalysis.h>
#include <Roamly/CommandLine/ConsoleExport.h>
#include <Roamly/CommandLine/ConsoleImport.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/OffscreenApplication.h>
#include <Roamly/CommandLine/ProjectOpening.h>
#include <Roamly/Document/OutputFile.h>
#include <Roamly/Document/ProjectMusic.h>
#include <Roamly/Document/ProjectStore.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

using ProjectModel::MusicSelection;
using ProjectModel::Project;

struct Wishes {
    std::filesystem::path output;
    std::optional<std::string> projectFile;
    std::optional<MusicSelection> music;
    Document::AppSettings settings;
};

/// Everything that happens to the project before the movie is made of it.
Jobs::ImportOutcome fillProject(Document::ProjectDocument& document, const Wishes& wishes,
                                const Invocation& invocation) {
    if (wishes.music)
        document.edit("Choose Music", [&](Project& project) { project.userSetMusic(wishes.music); });
    Document::checkMusicIsPlayable(document.project(), invocation.stop);
    const std::vector<std::string>& folders = invocation.arguments.positionals();
    Jobs::ImportOutcome outcome = importFolders(document, folders, invocation);
    if (outcome.notices.size() == folders.size())
        throw Failure("No movie was made.");
    invocation.console.say(addedSentence(outcome, document.project()));
    Document::OutputFile::checkIsNoInput(wishes.output, wishes.projectFile.value_or(std::string{}),
                                         document.project());
    (void)analyze(document, wishes.settings, invocation);
    return outcome;
}

struct Prepared {
    Project project;
    Jobs::ImportOutcome outcome;
};

/// Works on the project of the file where there is one, and keeps the result there.
Prepared prepare(const Wishes& wishes, const Invocation& invocation) {
    const std::optional<std::string>& projectFile = wishes.projectFile;
    std::error_code ignored;
    if (projectFile && std::filesystem::exists(*projectFile, ignored)) {
        Document::DocumentSession session = openForLongWork(*projectFile, invocation);
        Jobs::ImportOutcome outcome = fillProject(session.document(), wishes, invocation);
        session.saveMerged(waitFor(invocation));
        // Photos that somebody else added meanwhile are in the project now.
        Document::OutputFile::checkIsNoInput(wishes.output, *projectFile, session.project());
        return {session.project(), std::move(outcome)};
    }
    Document::ProjectDocument document;
    Jobs::ImportOutcome outcome = fillProject(document, wishes, invocation);
    if (projectFile)
        Document::ProjectStore::create(*projectFile, document.project());
    return {document.project(), std::move(outcome)};
}

int run(const Invocation& invocation) {
    const Arguments& arguments = invocation.arguments;
    Wishes wishes{.output = arguments.requiredValue("--output"),
                  .projectFile = arguments.value("--project"),
                  .music = std::nullopt,
                  .settings = Platform::SettingsStore{}.load()};
    const Export::ExportPreset preset = exportPreset(arguments, wishes.settings);
    Document::OutputFile::checkIsWritable(wishes.output);
    if (wishes.projectFile) {
        Document::OutputFile::checkIsNotTheProject(wishes.output, *wishes.projectFile);
        Document::OutputFile::checkIsWritable(*wishes.projectFile);
    }
    if (const std::optional<std::string> file = arguments.value("--music"))
        wishes.music = Document::musicSelection(*file);

    const OffscreenApplication application;
    const Prepared prepared = prepare(wishes, invocation);
    const std::set<Foundation::Uuid> failed =
        exportMovie(prepared.project, wishes.settings, preset, wishes.output, invocation);
    invocation.console.report([&](Foundation::JsonWriter& json) {
        json.beginObject();
        JsonForms::writeMembers(json, prepared.outcome);
        JsonForms::write(json.key("failedPhotoIDs"), failed);
        json.endObject();
    });
    return ExitStatus::done;
}

} // namespace

Command makeCommand() {
    std::vector<Option> options = exportOptions();
    options.push_back({"--music", "FILE", "an audio file to play with it"});
    options.push_back({"--project", "FILE.roamly", "keep the project there; one that exists is added to"});
    return {
        .name = "make",
        .summary = "turn folders of photos into a movie in one go",
        .usages = {"FOLDER… -o FILE.mov [--music FILE] [--project FILE.roamly] [OPTION…]"},
        .positionals = {{"FOLDER", "a folder of photos; those inside it are searched too", false, true}},
        .options = std::move(options),
        .details =
            "The photos are shown in the order in which they were taken, each place announced, and of\n"
            "near-duplicates only the best. Everything happens on this computer.",
        .examples = {"roamly make ~/Pictures/Lisbon -o Lisbon.mov",
                     "roamly make phone camera -o Lisbon.mov --music fado.mp3 --project Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
