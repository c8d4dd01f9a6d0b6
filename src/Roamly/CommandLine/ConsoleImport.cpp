// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Awaiting.h>
#include <Roamly/CommandLine/ConsoleImport.h>
#include <Roamly/CommandLine/Counted.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/Platform/MachineImport.h>

#include <exception>

namespace CommandLine {

Jobs::ImportOutcome importFolders(Document::ProjectDocument& document, std::span<const std::string> folders,
                                  const Invocation& invocation) {
    using Coordinator = Jobs::ImportCoordinator;
    Coordinator* running = nullptr;
    const auto show = [&] {
        const Coordinator::State& state = running->state();
        if (!state.isRunning || !state.progress)
            return;
        const PhotoSources::ImportProgress& progress = *state.progress;
        const double fraction = progress.total == 0 ? 1.0
                                                    : static_cast<double>(progress.completed) /
                                                          static_cast<double>(progress.total);
        invocation.console.progress(*state.progressText, fraction,
                                    [&](Foundation::JsonWriter& json) { JsonForms::write(json, progress); });
    };
    Jobs::ActionQueue queue;
    Coordinator coordinator{queue.executor(), Platform::machineImport(), show};
    running = &coordinator;
    coordinator.importFolders(document, {folders.begin(), folders.end()});
    if (const std::exception_ptr unshown = await(
            queue, invocation.stop, [&] { return !coordinator.state().isRunning; },
            [&] { coordinator.cancel(); }))
        std::rethrow_exception(unshown);
    // Ctrl-C after the last photo, and before anything is saved, is one all the same.
    Foundation::throwIfStopped(invocation.stop);
    const Coordinator::State& state = coordinator.state();
    if (state.errorText)
        throw Failure(*state.errorText);
    for (const std::string& notice : state.outcome.notices)
        invocation.console.warn(notice);
    return state.outcome;
}

std::string addedSentence(const Jobs::ImportOutcome& outcome, const ProjectModel::Project& project) {
    return "Added " + counted(outcome.added, "photo") + "; the project holds " +
           std::to_string(project.photos.size()) + ".";
}

} // namespace CommandLine
