#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Analyzing.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>

#include <algorithm>

namespace CommandLine {

Roamly::AnalysisController::State analyze(Roamly::ProjectDocument& document,
                                          const Roamly::AppSettings& settings, const Invocation& invocation) {
    using Controller = Roamly::AnalysisController;
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
    // Its reports come on the working thread while this one only waits.
    Controller controller{show};
    running = &controller;
    controller.run(document, settings);
    {
        const std::stop_callback cancel{invocation.stop, [&] { controller.requestStop(); }};
        controller.wait();
    }
    Controller::State state = controller.state();
    if (state.wasCancelled)
        throw Foundation::Cancelled{};
    if (state.errorText)
        throw Failure(*state.errorText);
    for (const std::string& issue : state.issues)
        invocation.console.say(issue);
    return state;
}

} // namespace CommandLine
