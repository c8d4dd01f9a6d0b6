// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>
#include <string>

namespace Platform {

/// The OpenRouter API key, kept by the desktop's Secret Service and nowhere else. Failures are silent: a key
/// that cannot be read is no key, and what cannot be stored or removed leaves things as they were. Calls wait
/// for the service, which may ask the user to unlock their keyring, two minutes at the most.
namespace KeychainStore {

/// Where older versions kept the key: the settings file, under "openRouterKey".
struct LegacyKey {
    std::function<std::optional<std::string>()> read;
    std::function<void()> remove;
};

/// Whether a Secret Service answers on this session's bus, for those who want to tell why there is no key.
[[nodiscard]] bool isAvailable();

/// The stored key. A key left by an older version is moved into the Secret Service first.
[[nodiscard]] std::optional<std::string> load(const LegacyKey& legacy);

/// Stores the key in the one item there is; an empty key removes the item. False when that could not be done.
bool save(const std::string& key);

/// The item as it is.
[[nodiscard]] std::optional<std::string> read();
bool remove();

} // namespace KeychainStore

} // namespace Platform
