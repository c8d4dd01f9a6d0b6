// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/CaptionGenerating.h>
#include <Captioning/HTTPTransport.h>

#include <memory>
#include <optional>
#include <string>

namespace Captioning {

/// Captions by the OpenRouter cloud service, which is sent the photo. To be used only once the user said so.
class OpenRouterCaptioner : public CaptionGenerating {
public:
    static constexpr const char* defaultBaseURL = "https://openrouter.ai";
    static constexpr const char* defaultModel = "openai/gpt-4o-mini";

    /// An empty key means that none is stored.
    OpenRouterCaptioner(std::string apiKey, std::string model, std::optional<std::string> guidance,
                        std::shared_ptr<const HTTPTransport> transport, std::string baseURL = defaultBaseURL);

    [[nodiscard]] std::string caption(const Foundation::Image& image, const SceneTags& tags,
                                      const std::stop_token& stop) const override;

    /// Whether the service accepts the key. Never fails; without a key nothing is sent.
    [[nodiscard]] bool testConnection(const std::stop_token& stop = {}) const;

private:
    std::string m_apiKey;
    std::string m_model;
    std::optional<std::string> m_guidance;
    std::shared_ptr<const HTTPTransport> m_transport;
    std::string m_baseURL;
};

} // namespace Captioning
