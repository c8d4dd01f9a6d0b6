#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/ProjectSettingKeys.h>
#include <Roamly/CommandLine/Prompt.h>
#include <Roamly/CommandLine/Reviewing.h>
#include <Roamly/CommandLine/Suggestion.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

using ProjectModel::ProjectSettings;

std::vector<std::string_view> keyNames() {
    std::vector<std::string_view> names;
    for (const ProjectSettingKey& key : projectSettingKeys())
        names.push_back(key.name);
    return names;
}

const ProjectSettingKey& findKey(const std::string& name) {
    for (const ProjectSettingKey& key : projectSettingKeys()) {
        if (key.name == name)
            return key;
    }
    throw UsageError("A project has no setting “" + name + "”." + suggestion(name, keyNames()));
}

int run(const Invocation& invocation) {
    const Arguments& arguments = invocation.arguments;
    const ProjectSettingKey& key = findKey(arguments.positionals()[1]);
    const bool isUnset = arguments.has("--unset");
    const std::span<const std::string> values = arguments.positionalsFrom(2);
    if (isUnset == !values.empty())
        throw UsageError(isUnset ? "--unset goes without a VALUE." : "A VALUE or --unset is missing.");
    std::string text;
    if (!isUnset) {
        text = Values::text(values[0], "VALUE");
        ProjectSettings scratch;
        if (!key.assign(scratch, text))
            throw UsageError("“" + text + "” is no value for " + std::string{key.name} + "; it takes " +
                             std::string{key.accepts} + ".");
    }
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        const ProjectSettings before = document.project().settings;
        ProjectSettings after = before;
        if (isUnset) {
            key.clear(after);
        } else {
            key.assign(after, text);
            if (after.aiProvider) {
                const auto inEffect = effectiveProvider(before, Platform::SettingsStore{}.load());
                if (const auto confirmation = Document::privacyConfirmation(*after.aiProvider, inEffect))
                    confirm(*confirmation, arguments.has("--yes"), invocation.console, invocation.stop);
            }
        }
        document.edit("Change Settings",
                      [&](ProjectModel::Project& project) { project.userSetSettings(after); });
    });
}

} // namespace

Command setCommand() {
    return {
        .name = "set",
        .summary = "change a project’s own settings",
        .usages = {"PROJECT KEY VALUE", "PROJECT KEY --unset"},
        .positionals = {{"PROJECT", "the project file"},
                        {.name = "KEY", .help = "the setting, see below", .choices = keyNames()},
                        {"VALUE", "its new value", true}},
        .options = {{"--unset", {}, "the settings for all projects hold again"},
                    {"--yes", {}, "confirm that photos leave this computer, for aiProvider openRouter"}},
        .details = "What a project does not set is taken from the settings for all projects, see “roamly "
                   "settings”.\n"
                   "\n"
                   "  photoDuration      a number of seconds above 0: how long each photo is on screen\n"
                   "  kenBurnsEnabled    true or false: slow pan and zoom on photos\n"
                   "  captionsEnabled    true or false: show captions in the video\n"
                   "  aiCaptionsEnabled  true or false: allow generated captions\n"
                   "  chapterStyle       card or overlay: how a new place is announced\n"
                   "  aiProvider         apple, ollama or openRouter: who writes generated captions\n"
                   "  captionPrompt      any text: guidance for generated captions",
        .examples = {"roamly set Lisbon.roamly photoDuration 4",
                     "roamly set Lisbon.roamly chapterStyle --unset"},
        .run = run,
    };
}

} // namespace CommandLine
