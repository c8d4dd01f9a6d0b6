// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/OllamaCaptioner.h>
#include <Captioning/OpenRouterCaptioner.h>
#include <Roamly/Platform/ConnectionTest.h>

namespace Platform::ConnectionTest {

Outcome ollama(const std::string& baseURL, const std::string& model, const Transport& transport,
               const std::stop_token& stop) {
    const Captioning::OllamaCaptioner captioner{baseURL, model, std::nullopt, transport};
    const bool isGood = captioner.testConnection(stop);
    return {isGood, isGood ? "Connected ✓" : "Not reachable"};
}

Outcome openRouter(const std::string& key, const std::string& model, const Transport& transport,
                   const std::string& baseURL, const std::stop_token& stop) {
    const Captioning::OpenRouterCaptioner captioner{key, model, std::nullopt, transport, baseURL};
    const bool isGood = captioner.testConnection(stop);
    return {isGood, isGood ? "Key valid ✓" : "Invalid key or offline"};
}

} // namespace Platform::ConnectionTest
