// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/AppSettings.h>
#include <Roamly/Document/SettingsTable.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Platform {

/// The settings file could not be written. `what()` is one sentence for the user.
class SettingsStoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The user's settings file. Several processes may change it at the same time: each writes only the key it
/// was asked to write and keeps what the others wrote. The file is readable by its owner alone.
class SettingsStore {
public:
    /// `settings.ini` in the application's folder of the user's configuration.
    [[nodiscard]] static std::filesystem::path defaultPath();

    explicit SettingsStore(std::filesystem::path path = defaultPath());

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// What holds now. A key that is missing or holds something else than a value of its kind has its
    /// default.
    [[nodiscard]] Document::AppSettings load() const;

    /// Stores a value; false, and nothing changes, when the text is no value for the setting.
    /// Throws SettingsStoreError.
    bool set(const Document::Setting& setting, std::string_view text);

    /// Back to the default. Throws SettingsStoreError.
    void unset(const Document::Setting& setting);

    /// The OpenRouter key that an older version left here; none in files of this version.
    [[nodiscard]] std::optional<std::string> legacyOpenRouterKey() const;
    /// Throws SettingsStoreError.
    void removeLegacyOpenRouterKey();

private:
    void change(std::string_view key, const std::optional<std::string>& text);

    std::filesystem::path m_path;
};

} // namespace Platform
