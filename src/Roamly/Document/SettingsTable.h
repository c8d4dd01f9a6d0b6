// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/JsonWriter.h>
#include <ProjectModel/ProjectSettings.h>
#include <Roamly/Document/AppSettings.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Document {

/// How a record of settings holds one of them. Pure functions, any thread.
template <typename Record>
struct SettingAccess {
    /// In files and commands.
    std::string_view name;
    /// Reads the text into the record; false when it is no value for this setting, and nothing changes.
    bool (*assign)(Record& record, std::string_view text);
    /// As in a record where nobody set anything: the user's setting has its default, a project's is absent.
    void (*clear)(Record& record);
    /// The text that `assign` reads back; nothing when the record holds no value.
    std::optional<std::string> (*text)(const Record& record);
    /// Writes the typed value; `null` when the record holds none.
    void (*write)(Foundation::JsonWriter& json, const Record& record);
};

/// One setting: what it means, and where the user's settings and a project's own hold it.
struct Setting {
    /// What a value may be, to complete "it takes …".
    std::string_view accepts;
    /// What it does, to follow `accepts` and a colon.
    std::string_view summary;
    SettingAccess<AppSettings> user;
    /// Absent when it is the same for all projects.
    std::optional<SettingAccess<ProjectModel::ProjectSettings>> project;
};

/// All settings, in the order they are listed to people.
[[nodiscard]] std::span<const Setting> settingsTable();

/// The setting that the user's settings know under a name; null when there is none.
[[nodiscard]] const Setting* findUserSetting(std::string_view name);
/// The setting that a project knows under a name; null when there is none. `project` is present in it.
[[nodiscard]] const Setting* findProjectSetting(std::string_view name);

/// What to tell about a text that `assign` did not take.
[[nodiscard]] std::string noValueSentence(const Setting& setting, std::string_view name,
                                          std::string_view text);

} // namespace Document
