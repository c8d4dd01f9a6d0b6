// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ConsoleImport.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/ProjectOpening.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const std::span<const std::string> folders = invocation.arguments.positionalsFrom(1);
    Document::DocumentSession session = openForLongWork(invocation.arguments.positionals()[0], invocation);
    const Jobs::ImportOutcome outcome = importFolders(session.document(), folders, invocation);
    session.saveMerged(waitFor(invocation));
    invocation.console.say(addedSentence(outcome, session.project()));
    invocation.console.report([&](Foundation::JsonWriter& json) {
        json.beginObject();
        JsonForms::writeMembers(json, outcome);
        json.endObject();
    });
    return outcome.notices.size() == folders.size() ? ExitStatus::failed : ExitStatus::done;
}

} // namespace

Command importCommand() {
    return {
        .name = "import",
        .summary = "add the photos of folders to a project",
        .usages = {"PROJECT FOLDER…"},
        .positionals = {{"PROJECT", "the project file"},
                        {"FOLDER", "a folder; those inside it are searched too", false, true}},
        .options = {},
        .details =
            "Photos that the project holds already are not added again and stay as they are. New ones are\n"
            "sorted in by the time they were taken, unless the photos were moved by hand before.\n"
            "Interrupted with Ctrl-C, the project stays as it was.",
        .examples = {"roamly import Lisbon.roamly ~/Pictures/Lisbon /media/camera/DCIM"},
        .run = run,
    };
}

} // namespace CommandLine
