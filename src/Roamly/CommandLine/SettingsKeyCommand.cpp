#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Prompt.h>
#include <Roamly/Jobs/CaptionController.h>
#include <Roamly/Platform/CaptionEngine.h>
#include <Roamly/Platform/KeychainStore.h>

namespace CommandLine {

namespace {

constexpr const char* noSecretService = "There is no Secret Service on this session (GNOME Keyring or "
                                        "KWallet, say), which alone may keep the key.";

void report(const Invocation& invocation, bool isStored) {
    invocation.console.report([isStored](Foundation::JsonWriter& json) {
        json.beginObject().member("stored", isStored).endObject();
    });
}

int setKey(const Invocation& invocation) {
    const std::string key = askSecret("OpenRouter API key:", invocation.stop);
    if (key.empty())
        throw Failure("No key was given; “roamly settings key clear” removes the stored one.");
    if (!Platform::KeychainStore::save(key))
        throw Failure(Platform::KeychainStore::isAvailable() ? "The Secret Service did not take the key."
                                                             : noSecretService);
    invocation.console.say("The key is stored in your keyring.");
    report(invocation, true);
    return ExitStatus::done;
}

int clearKey(const Invocation& invocation) {
    if (!Platform::KeychainStore::save(""))
        throw Failure(Platform::KeychainStore::isAvailable() ? "The Secret Service did not remove the key."
                                                             : noSecretService);
    invocation.console.say("No key is stored.");
    report(invocation, false);
    return ExitStatus::done;
}

int showStatus(const Invocation& invocation) {
    const bool isStored = !Platform::storedOpenRouterKey().empty();
    if (!isStored && !Platform::KeychainStore::isAvailable())
        invocation.console.warn(noSecretService);
    invocation.console.say(isStored ? "A key is stored." : "No key is stored.");
    report(invocation, isStored);
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
