// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/Prompt.h>
#include <Roamly/CommandLine/SettingsHelp.h>
#include <Roamly/CommandLine/Suggestion.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Document/SettingsTable.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

using ProjectModel::ProjectSettings;

const Document::Setting& findSetting(const std::string& name) {
    if (const Document::Setting* const setting = Document::findProjectSetting(name))
        return *setting;
    throw UsageError("A project has no setting “" + name + "”." +
                     suggestion(name, SettingsHelp::projectNames()));
}

int run(const Invocation& invocation) {
    const Arguments& arguments = invocation.arguments;
    const Document::Setting& setting = findSetting(arguments.positionals()[1]);
    const auto& own = *setting.project;
    const bool isUnset = arguments.has("--unset");
    const std::span<const std::string> values = arguments.positionalsFrom(2);
    if (isUnset == !values.empty())
        throw UsageError(isUnset ? "--unset goes without a VALUE." : "A VALUE or --unset is missing.");
    std::string text;
    if (!isUnset) {
        text = Values::text(values[0], "VALUE");
        ProjectSettings scratch;
        if (!own.assign(scratch, text))
            throw UsageError(Document::noValueSentence(setting, own.name, text));
    }
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        const ProjectSettings before = document.project().settings;
        ProjectSettings after = before;
        if (isUnset) {
            own.clear(after);
        } else {
            own.assign(after, text);
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
                        {.name = "KEY",
                         .help = "the setting, see below",
                         .choices = SettingsHelp::projectNames()},
                        {"VALUE", "its new value", true}},
        .options = {{"--unset", {}, "the settings for all projects hold again"},
                    {"--yes", {}, "confirm that photos leave this computer, for aiProvider openRouter"}},
        .details = std::string{"What a project does not set is taken from the settings for all projects, see "
                               "“roamly settings”.\n\n"} +
                   SettingsHelp::projectTable(),
        .examples = {"roamly set Lisbon.roamly photoDuration 4",
                     "roamly set Lisbon.roamly chapterStyle --unset"},
        .run = run,
    };
}

} // namespace CommandLine
