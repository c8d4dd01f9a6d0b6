// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ConsoleAnalysis.h>
#include <Roamly/CommandLine/Counted.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/ProjectOpening.h>
#include <Roamly/Document/ReviewModel.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    Document::DocumentSession session = openForLongWork(invocation.arguments.positionals()[0], invocation);
    if (invocation.arguments.has("--reset"))
        session.document().edit("Reset Analysis",
                                [](ProjectModel::Project& project) { project.resetAnalysisSelection(); });
    const Jobs::AnalysisController::State state =
        analyze(session.document(), Platform::SettingsStore{}.load(), invocation);
    session.saveMerged(waitFor(invocation));
    const std::size_t selected = Document::ReviewModel{session.document()}.selectedCount();
    invocation.console.say("Analysed " + counted(session.project().photos.size(), "photo") + "; " +
                           std::to_string(selected) + " selected.");
    invocation.console.report([&](Foundation::JsonWriter& json) {
        json.beginObject();
        json.key("issues").beginArray();
        for (const std::string& issue : state.issues)
            json.value(issue);
        json.endArray();
        json.member("canRetry", state.canRetry);
        json.endObject();
    });
    return ExitStatus::done;
}

} // namespace

Command analyzeCommand() {
    return {
        .name = "analyze",
        .summary = "find locations, group duplicates and pick the best shots",
        .usages = {"PROJECT [--reset]"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {{"--reset",
                     {},
                     "begin anew: select every photo and forget groups, your own choices included"}},
        .details =
            "Everything happens on this computer, without a network, unless the setting geocoderURL names a\n"
            "server that is asked for places. What you chose by hand stays. Of each\n"
            "group of near-duplicates the best shot stays selected. Interrupted with Ctrl-C, the project\n"
            "is as it was.",
        .examples = {"roamly analyze Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
