// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/Document/ProjectStore.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const std::string& file = invocation.arguments.positionals()[0];
    Document::ProjectStore::create(file, ProjectModel::Project::empty());
    invocation.console.say("Created " + file + ".");
    invocation.console.report([](Foundation::JsonWriter& json) { json.beginObject().endObject(); });
    return ExitStatus::done;
}

} // namespace

Command newCommand() {
    return {
        .name = "new",
        .summary = "make an empty project",
        .usages = {"FILE"},
        .positionals = {{"FILE", "the project file to make, such as Lisbon.roamly"}},
        .options = {},
        .details = "A file that exists already is left as it is.",
        .examples = {"roamly new Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
