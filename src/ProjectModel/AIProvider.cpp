// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/AIProvider.h>
#include <ProjectModel/Words.h>

namespace ProjectModel {

std::string_view rawValue(AIProvider provider) {
    switch (provider) {
    case AIProvider::apple:
        return "apple";
    case AIProvider::ollama:
        return "ollama";
    case AIProvider::openRouter:
        return "openRouter";
    }
    return {};
}

std::optional<AIProvider> aiProviderFromRawValue(std::string_view text) {
    for (const AIProvider provider : allAIProviders) {
        if (rawValue(provider) == text)
            return provider;
    }
    return std::nullopt;
}

std::string_view displayName(AIProvider provider) {
    switch (provider) {
    case AIProvider::apple:
        return Words::builtInProvider;
    case AIProvider::ollama:
        return "Ollama (local)";
    case AIProvider::openRouter:
        return "OpenRouter (cloud)";
    }
    return {};
}

} // namespace ProjectModel
