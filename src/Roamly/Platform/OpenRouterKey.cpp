// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/KeychainStore.h>
#include <Roamly/Platform/OpenRouterKey.h>
#include <Roamly/Platform/SettingsStore.h>

namespace Platform::OpenRouterKey {

namespace {

constexpr std::string_view noSecretService = "There is no Secret Service on this session (GNOME Keyring or "
                                             "KWallet, say), which alone may keep the key.";

} // namespace

std::string stored() {
    SettingsStore settings;
    return KeychainStore::load({[&settings] { return settings.legacyOpenRouterKey(); },
                                [&settings] { settings.removeLegacyOpenRouterKey(); }})
        .value_or("");
}

std::optional<std::string_view> keep(const std::string& key) {
    if (KeychainStore::save(key))
        return std::nullopt;
    if (!KeychainStore::isAvailable())
        return noSecretService;
    return key.empty() ? "The Secret Service did not remove the key."
                       : "The Secret Service did not take the key.";
}

Status status() {
    if (!stored().empty())
        return {true, "A key is stored.", std::nullopt};
    return {false, isNotStored, KeychainStore::isAvailable() ? std::nullopt : std::optional{noSecretService}};
}

std::optional<std::string_view> readingProblem() {
    if (KeychainStore::isAvailable())
        return std::nullopt;
    return "There is no Secret Service on this session, so that no API key can be read.";
}

} // namespace Platform::OpenRouterKey
