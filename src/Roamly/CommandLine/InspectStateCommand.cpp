// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/ProjectTimeline.h>
#include <Roamly/CommandLine/Values.h>
#include <Timeline/Playhead.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    std::vector<double> times;
    for (const std::string& typed : invocation.arguments.values("--at"))
        times.push_back(Values::number(typed, "--at"));
    if (times.empty())
        throw UsageError("--at is missing.");
    const ProjectTimeline loaded = loadTimeline(invocation.arguments.positionals()[0]);
    const Timeline::Playhead playhead{loaded.timeline, loaded.settings.crossfade};
    for (const double time : times)
        invocation.console.result(
            [&](Foundation::JsonWriter& json) { JsonForms::write(json, playhead.state(time)); });
    return ExitStatus::done;
}

} // namespace

Command inspectStateCommand() {
    return {
        .name = "inspect state",
        .summary = "what is on screen at a time",
        .usages = {"PROJECT --at T [--at T …]"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {{.name = "--at",
                     .value = "T",
                     .help = "seconds from the beginning; any number of times",
                     .repeatable = true}},
        .details = "Prints one JSON object a line, in the order of the times.",
        .examples = {"roamly inspect state Lisbon.roamly --at 0 --at 7.25"},
        .run = run,
    };
}

} // namespace CommandLine
