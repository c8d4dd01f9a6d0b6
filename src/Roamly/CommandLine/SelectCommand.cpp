// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/ReviewModel.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation, bool isSelected) {
    const std::set<Foundation::Uuid> ids = Values::uuids(invocation.arguments.positionalsFrom(1));
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        Document::ReviewModel{document}.setSelection(isSelected, ids);
    });
}

std::vector<Positional> positionals() {
    return {{"PROJECT", "the project file"}, {"ID", "a photo’s id", false, true}};
}

} // namespace

Command selectCommand() {
    return {
        .name = "select",
        .summary = "take photos into the slideshow",
        .usages = {"PROJECT ID…"},
        .positionals = positionals(),
        .options = {},
        .details = "The choice is yours and stays when the photos are analysed again.",
        .examples = {"roamly select Lisbon.roamly 6F9619FF-8B86-D011-B42D-00C04FC964FF"},
        .run = [](const Invocation& invocation) { return run(invocation, true); },
    };
}

Command deselectCommand() {
    return {
        .name = "deselect",
        .summary = "leave photos out of the slideshow",
        .usages = {"PROJECT ID…"},
        .positionals = positionals(),
        .options = {},
        .details = "The photos stay in the project; “roamly remove” takes them out of it.",
        .examples = {"roamly deselect Lisbon.roamly 6F9619FF-8B86-D011-B42D-00C04FC964FF"},
        .run = [](const Invocation& invocation) { return run(invocation, false); },
    };
}

} // namespace CommandLine
