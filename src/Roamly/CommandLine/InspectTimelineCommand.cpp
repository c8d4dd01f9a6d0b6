// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/ProjectTimeline.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const ProjectTimeline loaded = loadTimeline(invocation.arguments.positionals()[0]);
    invocation.console.result([&](Foundation::JsonWriter& json) { JsonForms::write(json, loaded.timeline); });
    return ExitStatus::done;
}

} // namespace

Command inspectTimelineCommand() {
    return {
        .name = "inspect timeline",
        .summary = "the slideshow laid out in time",
        .usages = {"PROJECT"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {},
        .details = "Prints one JSON object; times are seconds.",
        .examples = {"roamly inspect timeline Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
