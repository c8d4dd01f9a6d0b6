// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/CaptionGenerating.h>
#include <Captioning/HTTPTransport.h>

#include <memory>
#include <optional>
#include <string>

namespace Captioning {

/// Captions by a local Ollama server, which is sent the photo.
class OllamaCaptioner : public CaptionGenerating {
public:
    static constexpr const char* defaultBaseURL = "http://127.0.0.1:11434";
    static constexpr const char* defaultModel = "llava";

    OllamaCaptioner(std::string baseURL, std::string model, std::optional<std::string> guidance,
                    std::shared_ptr<const HTTPTransport> transport);

    [[nodiscard]] std::string caption(const Foundation::Image& image, const SceneTags& tags,
                                      const std::stop_token& stop) const override;

    /// Whether the server answers. Never fails.
    [[nodiscard]] bool testConnection(const std::stop_token& stop = {}) const;

private:
    std::string m_baseURL;
    std::string m_model;
    std::optional<std::string> m_guidance;
    std::shared_ptr<const HTTPTransport> m_transport;
};

} // namespace Captioning
