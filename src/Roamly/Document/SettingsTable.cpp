// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/SettingValue.h>
#include <Roamly/Document/SettingsTable.h>

#include <algorithm>
#include <array>
#include <type_traits>

namespace Document {

namespace {

using Foundation::JsonWriter;
using ProjectModel::ProjectSettings;

/// How each kind of value is shown and written.
std::optional<std::string> textOf(bool value) {
    return value ? "true" : "false";
}
std::optional<std::string> textOf(double value) {
    return SettingValue::text(value);
}
std::optional<std::string> textOf(const std::string& value) {
    return value;
}
template <typename Choice>
requires std::is_enum_v<Choice> std::optional<std::string> textOf(Choice value) {
    return std::string{rawValue(value)};
}
template <typename Value>
std::optional<std::string> textOf(const std::optional<Value>& value) {
    return value ? textOf(*value) : std::nullopt;
}

template <typename Value>
void write(JsonWriter& json, const Value& value) {
    if constexpr (std::is_enum_v<Value>)
        json.value(rawValue(value));
    else
        json.value(value);
}
template <typename Value>
void write(JsonWriter& json, const std::optional<Value>& value) {
    if (value)
        write(json, *value);
    else
        json.null();
}

template <auto Member, auto Parse, typename Record>
constexpr SettingAccess<Record> access(std::string_view name) {
    return {name,
            [](Record& record, std::string_view text) {
                auto value = Parse(text);
                if (!value)
                    return false;
                record.*Member = *std::move(value);
                return true;
            },
            [](Record& record) { record.*Member = Record{}.*Member; },
            [](const Record& record) { return textOf(record.*Member); },
            [](JsonWriter& json, const Record& record) { write(json, record.*Member); }};
}

/// One that holds for all projects alike.
template <auto User, auto Parse>
constexpr Setting general(std::string_view name, std::string_view accepts, std::string_view summary) {
    return {accepts, summary, access<User, Parse, AppSettings>(name), std::nullopt};
}

/// One that a project may have of its own, under another name perhaps.
template <auto User, auto Own, auto Parse>
constexpr Setting perProject(std::string_view name, std::string_view ownName, std::string_view accepts,
                             std::string_view summary) {
    return {accepts, summary, access<User, Parse, AppSettings>(name),
            access<Own, Parse, ProjectSettings>(ownName)};
}
template <auto User, auto Own, auto Parse>
constexpr Setting perProject(std::string_view name, std::string_view accepts, std::string_view summary) {
    return perProject<User, Own, Parse>(name, name, accepts, summary);
}

constexpr std::array table{
    perProject<&AppSettings::photoDuration, &ProjectSettings::photoDuration, SettingValue::positiveNumber>(
        "photoDuration", "a number of seconds above 0", "how long each photo is on screen"),
    perProject<&AppSettings::kenBurnsEnabled, &ProjectSettings::kenBurnsEnabled, SettingValue::boolean>(
        "kenBurnsEnabled", "true or false", "slow pan and zoom on photos"),
    perProject<&AppSettings::chapterStyle, &ProjectSettings::chapterStyle,
               ProjectModel::chapterStyleFromRawValue>("chapterStyle", "card or overlay",
                                                       "how a new place is announced"),
    perProject<&AppSettings::captionsEnabled, &ProjectSettings::captionsEnabled, SettingValue::boolean>(
        "captionsEnabled", "true or false", "show captions in the video"),
    perProject<&AppSettings::aiCaptionsEnabled, &ProjectSettings::aiCaptionsEnabled, SettingValue::boolean>(
        "aiCaptionsEnabled", "true or false", "allow generated captions"),
    general<&AppSettings::exportResolution, Export::exportResolutionFromRawValue>(
        "exportResolution", "p1080 or p2160", "size of exported movies"),
    general<&AppSettings::exportCodec, Export::exportCodecFromRawValue>("exportCodec", "h264 or hevc",
                                                                        "video format of exported movies"),
    perProject<&AppSettings::defaultAIProvider, &ProjectSettings::aiProvider,
               ProjectModel::aiProviderFromRawValue>(
        "defaultAIProvider", "aiProvider", "apple, ollama or openRouter", "who writes generated captions"),
    general<&AppSettings::ollamaBaseURL, SettingValue::webAddress>(
        "ollamaBaseURL", "an http or https address", "the Ollama server"),
    // An empty name of a model is a value like any other, not the default.
    general<&AppSettings::ollamaModel, SettingValue::plainText>("ollamaModel", "a name",
                                                                "the model of the Ollama server"),
    general<&AppSettings::openRouterModel, SettingValue::plainText>("openRouterModel", "a name",
                                                                    "the model at OpenRouter"),
    perProject<&AppSettings::captionPrompt, &ProjectSettings::captionPrompt, SettingValue::plainText>(
        "captionPrompt", "any text", "guidance for generated captions"),
    general<&AppSettings::geocoderURL, SettingValue::webAddress>(
        "geocoderURL", "an http or https address",
        "a Nominatim server that is to name places; without one they are named on this computer"),
};

} // namespace

std::span<const Setting> settingsTable() {
    return table;
}

const Setting* findUserSetting(std::string_view name) {
    const auto found =
        std::ranges::find_if(table, [&](const Setting& setting) { return setting.user.name == name; });
    return found == table.end() ? nullptr : &*found;
}

const Setting* findProjectSetting(std::string_view name) {
    const auto found = std::ranges::find_if(
        table, [&](const Setting& setting) { return setting.project && setting.project->name == name; });
    return found == table.end() ? nullptr : &*found;
}

std::string noValueSentence(const Setting& setting, std::string_view name, std::string_view text) {
    return "“" + std::string{text} + "” is no value for " + std::string{name} + "; it takes " +
           std::string{setting.accepts} + ".";
}

} // namespace Document
