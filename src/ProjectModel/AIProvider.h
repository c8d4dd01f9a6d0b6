// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ProjectModel {

/// Which caption backend writes captions.
enum class AIProvider { apple, ollama, openRouter };

/// In the order of pickers.
inline constexpr std::array allAIProviders{AIProvider::apple, AIProvider::ollama, AIProvider::openRouter};

[[nodiscard]] std::string_view rawValue(AIProvider provider);
[[nodiscard]] std::optional<AIProvider> aiProviderFromRawValue(std::string_view text);
[[nodiscard]] std::string_view displayName(AIProvider provider);
[[nodiscard]] constexpr bool sendsPhotosToCloud(AIProvider provider) {
    return provider == AIProvider::openRouter;
}

} // namespace ProjectModel
