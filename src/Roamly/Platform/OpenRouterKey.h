// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The OpenRouter API key of the user, which the desktop's Secret Service keeps, and what to tell about it.
/// Calls wait for the service.
namespace Platform::OpenRouterKey {

/// The stored key, empty when there is none. One that an older version left in the settings is moved into the
/// Secret Service first.
[[nodiscard]] std::string stored();

/// Keeps the key; an empty one removes what is stored. A sentence for the user when that could not be done.
[[nodiscard]] std::optional<std::string_view> keep(const std::string& key);

/// What is known about the stored key, without the key.
struct Status {
    bool isStored = false;
    std::string_view sentence;
    /// Why there can be no key here.
    std::optional<std::string_view> problem;
};
[[nodiscard]] Status status();

/// What to tell before a key is needed that can't be read; nothing when a Secret Service answers.
[[nodiscard]] std::optional<std::string_view> readingProblem();

inline constexpr std::string_view isKept = "The key is stored in your keyring.";
inline constexpr std::string_view isNotStored = "No key is stored.";

} // namespace Platform::OpenRouterKey
