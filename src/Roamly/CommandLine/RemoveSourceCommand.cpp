// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/Values.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const Foundation::Uuid id = Values::uuid(invocation.arguments.positionals()[1]);
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        document.edit("Remove Source", [&](ProjectModel::Project& project) { project.removeSource(id); });
    });
}

} // namespace

Command removeSourceCommand() {
    return {
        .name = "remove-source",
        .summary = "remove a source and the photos that came from it",
        .usages = {"PROJECT ID"},
        .positionals = {{"PROJECT", "the project file"},
                        {"ID", "the source’s id, as “roamly sources” prints it"}},
        .options = {},
        .details = "The photo files themselves are not touched.",
        .examples = {"roamly remove-source Lisbon.roamly 6F9619FF-8B86-D011-B42D-00C04FC964FF"},
        .run = run,
    };
}

} // namespace CommandLine
