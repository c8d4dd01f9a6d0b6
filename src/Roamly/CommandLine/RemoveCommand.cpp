// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/ReviewModel.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const std::set<Foundation::Uuid> ids = Values::uuids(invocation.arguments.positionalsFrom(1));
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        Document::ReviewModel{document}.removePhotos(ids);
    });
}

} // namespace

Command removeCommand() {
    return {
        .name = "remove",
        .summary = "take photos out of a project",
        .usages = {"PROJECT ID…"},
        .positionals = {{"PROJECT", "the project file"}, {"ID", "a photo’s id", false, true}},
        .options = {},
        .details = "The photo files themselves are not touched.",
        .examples = {"roamly remove Lisbon.roamly 6F9619FF-8B86-D011-B42D-00C04FC964FF"},
        .run = run,
    };
}

} // namespace CommandLine
