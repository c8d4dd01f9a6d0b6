// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/Document/ProjectStore.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const Document::LoadedProject loaded =
        Document::ProjectStore::load(invocation.arguments.positionals()[0]);
    for (const ProjectModel::PhotoSource& source : loaded.project.sources)
        invocation.console.result([&](Foundation::JsonWriter& json) { JsonForms::write(json, source); });
    if (loaded.hasNewIdentifiers)
        invocation.console.say(
            "The project is of an older version: its sources keep an identifier only once a "
            "command has changed and saved it.");
    return ExitStatus::done;
}

} // namespace

Command sourcesCommand() {
    return {
        .name = "sources",
        .summary = "list the folders and albums that a project’s photos came from",
        .usages = {"PROJECT"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {},
        .details = "Prints one JSON object a line: the source’s id and what it refers to.",
        .examples = {"roamly sources Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
