#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Suggestion.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

using Foundation::JsonWriter;
using Platform::SettingKey;

std::vector<std::string_view> keyNames() {
    std::vector<std::string_view> names;
    for (const SettingKey& key : Platform::settingKeys())
        names.push_back(key.name);
    return names;
}

const SettingKey& findKey(const std::string& name) {
    if (const SettingKey* const key = Platform::findSettingKey(name))
        return *key;
    throw UsageError("There is no setting “" + name + "”." + suggestion(name, keyNames()));
}

void writeAll(JsonWriter& json, const Document::AppSettings& settings) {
    json.beginObject();
    for (const SettingKey& key : Platform::settingKeys()) {
        if (key.text(settings))
            key.write(json.key(key.name), settings);
    }
    json.endObject();
}

int run(const Invocation& invocation) {
    const std::vector<std::string>& words = invocation.arguments.positionals();
    const bool isUnset = invocation.arguments.has("--unset");
    Platform::SettingsStore store;
    if (words.empty()) {
        if (isUnset)
            throw UsageError("--unset needs a KEY.");
        const Document::AppSettings settings = store.load();
        invocation.console.result([&](JsonWriter& json) { writeAll(json, settings); });
        return ExitStatus::done;
    }

    const SettingKey& key = findKey(words[0]);
    if (words.size() == 1 && !isUnset) {
        const Document::AppSettings settings = store.load();
        invocation.console.result([&](JsonWriter& json) { key.write(json, settings); });
        return ExitStatus::done;
    }
    if (words.size() == 2 && isUnset)
        throw UsageError("--unset goes without a VALUE.");
    if (isUnset) {
        store.unset(key);
        invocation.console.say(std::string{key.name} + " has its default again.");
    } else {
        const std::string text = Values::text(words[1], "VALUE");
        if (!store.set(key, text))
            throw UsageError("“" + text + "” is no value for " + words[0] + "; it takes " +
                             std::string{key.accepts} + ".");
        invocation.console.say("Saved.");
        if (key.name == "defaultAIProvider" && sendsPhotosToCloud(store.load().defaultAIProvider))
            invocation.console.warn(std::string{Document::providersNote});
    }
    invocation.console.report([](JsonWriter& json) { json.beginObject().endObject(); });
    return ExitStatus::done;
}

} // namespace

Command settingsCommand() {
    return {
        .name = "settings",
        .summary = "show or change the settings for all projects",
        .usages = {"", "KEY", "KEY VALUE", "KEY --unset"},
        .positionals = {{.name = "KEY",
                         .help = "one setting, see below; without it all are shown",
                         .isOptional = true,
                         .choices = keyNames()},
                        {"VALUE", "its new value", true}},
        .options = {{"--unset", {}, "back to the default"}},
        .details =
            "Values are shown as JSON. A project’s own settings win over these, see “roamly set”.\n"
            "\n"
            "  photoDuration      5           a number of seconds above 0: how long each photo is on screen\n"
            "  kenBurnsEnabled    true        true or false: slow pan and zoom on photos\n"
            "  chapterStyle       card        card or overlay: how a new place is announced\n"
            "  captionsEnabled    true        true or false: show captions in the video\n"
            "  aiCaptionsEnabled  true        true or false: allow generated captions\n"
            "  exportResolution   p1080       p1080 or p2160: size of exported movies\n"
            "  exportCodec        h264        h264 or hevc: video format of exported movies\n"
            "  defaultAIProvider  apple       apple, ollama or openRouter: who writes generated captions\n"
            "  ollamaBaseURL      http://127.0.0.1:11434\n"
            "                                 address of the Ollama server\n"
            "  ollamaModel        llava       model of the Ollama server\n"
            "  openRouterModel    openai/gpt-4o-mini\n"
            "                                 model at OpenRouter\n"
            "  captionPrompt      (none)      any text: guidance for generated captions\n"
            "  geocoderURL        (none)      address of a Nominatim server that is to name places; without\n"
            "                                 one they are named on this computer",
        .examples = {"roamly settings", "roamly settings exportResolution p2160",
                     "roamly settings photoDuration --unset"},
        .run = run,
    };
}

} // namespace CommandLine
