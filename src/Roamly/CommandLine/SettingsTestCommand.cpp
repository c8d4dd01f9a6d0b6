#include <Captioning/OllamaCaptioner.h>
#include <Captioning/OpenRouterCaptioner.h>
#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/Jobs/CaptionController.h>
#include <Roamly/Platform/CaptionEngine.h>
#include <Roamly/Platform/KeychainStore.h>

namespace CommandLine {

namespace {

struct Outcome {
    bool isGood = false;
    const char* text = "";
};

Outcome testOllama(const Jobs::CaptionEnvironment& environment, const std::stop_token& stop) {
    const Document::AppSettings settings = environment.settings();
    const Captioning::OllamaCaptioner captioner{Jobs::CaptionController::ollamaURL(settings),
                                                settings.ollamaModel, std::nullopt, environment.transport};
    const bool isGood = captioner.testConnection(stop);
    return {isGood, isGood ? "Connected ✓" : "Not reachable"};
}

Outcome testOpenRouter(const Jobs::CaptionEnvironment& environment, const std::stop_token& stop) {
    const Captioning::OpenRouterCaptioner captioner{environment.openRouterKey(),
                                                    environment.settings().openRouterModel, std::nullopt,
                                                    environment.transport, environment.openRouterBaseURL};
    const bool isGood = captioner.testConnection(stop);
    return {isGood, isGood ? "Key valid ✓" : "Invalid key or offline"};
}

int run(const Invocation& invocation) {
    const std::string& backend = invocation.arguments.positionals()[0];
    const Jobs::CaptionEnvironment environment = Platform::systemCaptionEnvironment();
    Outcome outcome;
    if (backend == "ollama") {
        outcome = testOllama(environment, invocation.stop);
    } else if (backend == "openRouter") {
        if (!Platform::KeychainStore::isAvailable())
            invocation.console.warn(
                "There is no Secret Service on this session, so that no API key can be read.");
        outcome = testOpenRouter(environment, invocation.stop);
    } else {
        throw UsageError("“" + backend + "” is none of ollama and openRouter.");
    }
    Foundation::throwIfStopped(invocation.stop);
    invocation.console.report([&](Foundation::JsonWriter& json) {
        json.beginObject().member("ok", outcome.isGood).member("status", outcome.text).endObject();
    });
    if (!outcome.isGood)
        throw Failure(outcome.text);
    invocation.console.say(outcome.text);
    return ExitStatus::done;
}

} // namespace

Command settingsTestCommand() {
    return {
        .name = "settings test",
        .summary = "test the connection to a caption backend",
        .usages = {"ollama", "openRouter"},
        .positionals = {{.name = "BACKEND",
                         .help = "ollama or openRouter",
                         .choices = {"ollama", "openRouter"}}},
        .options = {},
        .details = "Sends no photo. The exit status is 0 when the backend answers.",
        .examples = {"roamly settings test ollama"},
        .run = run,
    };
}

} // namespace CommandLine
