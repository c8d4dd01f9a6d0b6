// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Words.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/SettingsHelp.h>
#include <Roamly/CommandLine/Suggestion.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/SettingsTable.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

using Document::Setting;
using Foundation::JsonWriter;

const Setting& findSetting(const std::string& name) {
    if (const Setting* const setting = Document::findUserSetting(name))
        return *setting;
    throw UsageError("There is no setting “" + name + "”." + suggestion(name, SettingsHelp::userNames()));
}

void writeAll(JsonWriter& json, const Document::AppSettings& settings) {
    json.beginObject();
    for (const Setting& setting : Document::settingsTable()) {
        if (setting.user.text(settings))
            setting.user.write(json.key(setting.user.name), settings);
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

    const Setting& setting = findSetting(words[0]);
    if (words.size() == 1 && !isUnset) {
        const Document::AppSettings settings = store.load();
        invocation.console.result([&](JsonWriter& json) { setting.user.write(json, settings); });
        return ExitStatus::done;
    }
    if (words.size() == 2 && isUnset)
        throw UsageError("--unset goes without a VALUE.");
    if (isUnset) {
        store.unset(setting);
        invocation.console.say(words[0] + " has its default again.");
    } else {
        const std::string text = Values::text(words[1], "VALUE");
        if (!store.set(setting, text))
            throw UsageError(Document::noValueSentence(setting, words[0], text));
        invocation.console.say("Saved.");
        if (words[0] == "defaultAIProvider" && sendsPhotosToCloud(store.load().defaultAIProvider))
            invocation.console.warn(ProjectModel::Words::providersNote);
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
                         .choices = SettingsHelp::userNames()},
                        {"VALUE", "its new value", true}},
        .options = {{"--unset", {}, "back to the default"}},
        .details =
            std::string{
                "Values are shown as JSON. A project’s own settings win over these, see “roamly set”.\n\n"} +
            SettingsHelp::userTable(),
        .examples = {"roamly settings", "roamly settings exportResolution p2160",
                     "roamly settings photoDuration --unset"},
        .run = run,
    };
}

} // namespace CommandLine
