// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Help.h>
#include <Roamly/CommandLine/SettingsHelp.h>
#include <Roamly/Document/SettingsTable.h>

namespace CommandLine::SettingsHelp {

namespace {

using Document::Setting;

std::string meaning(const Setting& setting) {
    return std::string{setting.accepts} + ": " + std::string{setting.summary};
}

} // namespace

std::vector<std::string_view> userNames() {
    std::vector<std::string_view> names;
    for (const Setting& setting : Document::settingsTable())
        names.push_back(setting.user.name);
    return names;
}

std::vector<std::string_view> projectNames() {
    std::vector<std::string_view> names;
    for (const Setting& setting : Document::settingsTable()) {
        if (setting.project)
            names.push_back(setting.project->name);
    }
    return names;
}

std::string userTable() {
    const Document::AppSettings defaults;
    std::vector<std::vector<std::string>> rows;
    for (const Setting& setting : Document::settingsTable())
        rows.push_back({std::string{setting.user.name}, setting.user.text(defaults).value_or("(none)"),
                        meaning(setting)});
    return columnText(rows);
}

std::string projectTable() {
    std::vector<std::vector<std::string>> rows;
    for (const Setting& setting : Document::settingsTable()) {
        if (setting.project)
            rows.push_back({std::string{setting.project->name}, meaning(setting)});
    }
    return columnText(rows);
}

} // namespace CommandLine::SettingsHelp
