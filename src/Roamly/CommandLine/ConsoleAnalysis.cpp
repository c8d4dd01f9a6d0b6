// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Awaiting.h>
#include <Roamly/CommandLine/ConsoleAnalysis.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/Platform/MachineAnalysis.h>

#include <algorithm>
#include <exception>

namespace CommandLine {

Jobs::AnalysisController::State analyze(Document::ProjectDocument& document,
                                        const Document::AppSettings& settings, const Invocation& invocation) {
    using Controller = Jobs::AnalysisController;
    Controller* running = nullptr;
    const auto show = [&] {
        const Controller::State& state = running->state();
        if (!state.isRunning || !state.progress)
            return;
        const double fraction =
            static_cast<double>(state.progress->completed) / std::max(1, state.progress->total);
        invocation.console.progress(*state.progressText, fraction, [&](Foundation::JsonWriter& json) {
            JsonForms::write(json, *state.progress);
        });
    };
    Jobs::ActionQueue queue;
    std::exception_ptr unshown;
    Controller::State state;
    {
        Controller controller{queue.executor(), Platform::analyzeOnThisMachine, show};
        running = &controller;
        controller.run(document, settings);
        unshown = await(
            queue, invocation.stop, [&] { return !controller.state().isRunning; },
            [&] { controller.cancel(); });
        state = controller.state();
        // A cancelled analysis still saves what it learnt about places; it has when the controller is gone.
    }
    if (unshown)
        std::rethrow_exception(unshown);
    if (state.wasCancelled)
        throw Foundation::Cancelled{};
    if (state.errorText)
        throw Failure(*state.errorText);
    for (const std::string& issue : state.issues)
        invocation.console.say(issue);
    return state;
}

} // namespace CommandLine
