// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/Platform/CaptionEngine.h>
#include <Roamly/Platform/ConnectionTest.h>
#include <Roamly/Platform/OpenRouterKey.h>

namespace CommandLine {

namespace {

namespace ConnectionTest = Platform::ConnectionTest;

ConnectionTest::Outcome test(const std::string& backend, const Invocation& invocation) {
    const Jobs::CaptionEnvironment environment = Platform::systemCaptionEnvironment();
    const Document::AppSettings settings = environment.settings();
    if (backend == "ollama")
        return ConnectionTest::ollama(settings.ollamaBaseURL, settings.ollamaModel, environment.transport,
                                      invocation.stop);
    if (backend != "openRouter")
        throw UsageError("“" + backend + "” is none of ollama and openRouter.");
    if (const auto problem = Platform::OpenRouterKey::readingProblem())
        invocation.console.warn(*problem);
    return ConnectionTest::openRouter(environment.openRouterKey(), settings.openRouterModel,
                                      environment.transport, environment.openRouterBaseURL, invocation.stop);
}

int run(const Invocation& invocation) {
    const ConnectionTest::Outcome outcome = test(invocation.arguments.positionals()[0], invocation);
    Foundation::throwIfStopped(invocation.stop);
    invocation.console.report([&](Foundation::JsonWriter& json) {
        json.beginObject().member("ok", outcome.isGood).member("status", outcome.text).endObject();
    });
    if (!outcome.isGood)
        throw Failure(std::string{outcome.text});
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
