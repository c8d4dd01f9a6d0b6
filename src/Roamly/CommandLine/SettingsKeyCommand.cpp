// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Prompt.h>
#include <Roamly/Platform/OpenRouterKey.h>

namespace CommandLine {

namespace {

namespace OpenRouterKey = Platform::OpenRouterKey;

void report(const Invocation& invocation, bool isStored) {
    invocation.console.report([isStored](Foundation::JsonWriter& json) {
        json.beginObject().member("stored", isStored).endObject();
    });
}

void keep(const std::string& key) {
    if (const auto problem = OpenRouterKey::keep(key))
        throw Failure(std::string{*problem});
}

int setKey(const Invocation& invocation) {
    const std::string key = askSecret("OpenRouter API key:", invocation.stop);
    if (key.empty())
        throw Failure("No key was given; “roamly settings key clear” removes the stored one.");
    keep(key);
    invocation.console.say(OpenRouterKey::isKept);
    report(invocation, true);
    return ExitStatus::done;
}

int clearKey(const Invocation& invocation) {
    keep("");
    invocation.console.say(OpenRouterKey::isNotStored);
    report(invocation, false);
    return ExitStatus::done;
}

int showStatus(const Invocation& invocation) {
    const OpenRouterKey::Status status = OpenRouterKey::status();
    if (status.problem)
        invocation.console.warn(*status.problem);
    invocation.console.say(status.sentence);
    report(invocation, status.isStored);
    return ExitStatus::done;
}

int run(const Invocation& invocation) {
    const std::string& action = invocation.arguments.positionals()[0];
    if (action == "set")
        return setKey(invocation);
    if (action == "clear")
        return clearKey(invocation);
    if (action == "status")
        return showStatus(invocation);
    throw UsageError("“" + action + "” is none of set, clear and status.");
}

} // namespace

Command settingsKeyCommand() {
    return {
        .name = "settings key",
        .summary = "keep the OpenRouter API key in your keyring",
        .usages = {"set", "clear", "status"},
        .positionals = {{.name = "ACTION",
                         .help = "set, clear or status",
                         .choices = {"set", "clear", "status"}}},
        .options = {},
        .details =
            "“set” reads the key from standard input, or asks for it without showing it; it is never an\n"
            "argument, which others on this computer could see.",
        .examples = {"roamly settings key set", "roamly settings key set < key.txt"},
        .run = run,
    };
}

} // namespace CommandLine
