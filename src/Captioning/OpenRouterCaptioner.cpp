// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionError.h>
#include <Captioning/CaptionExchange.h>
#include <Captioning/CaptionPrompt.h>
#include <Captioning/ImageEncoding.h>
#include <Captioning/OpenRouterCaptioner.h>
#include <Foundation/JsonWriter.h>
#include <Http/Url.h>

#include <nlohmann/json.hpp>

#include <utility>

namespace Captioning {

namespace {

constexpr const char* applicationURL = "https://roamly.app";

std::string requestText(const std::string& model, const std::string& prompt, const std::string& jpegBase64) {
    Foundation::JsonWriter body{Foundation::JsonWriter::Layout::Compact};
    body.beginObject();
    body.member("model", model);
    body.member("max_tokens", 100);
    body.key("messages").beginArray().beginObject();
    body.member("role", "user");
    body.key("content").beginArray();
    body.beginObject().member("type", "text").member("text", prompt).endObject();
    body.beginObject().member("type", "image_url");
    body.key("image_url").beginObject().member("url", "data:image/jpeg;base64," + jpegBase64).endObject();
    body.endObject();
    body.endArray().endObject().endArray().endObject();
    return body.text();
}

/// choices[0].message.content, where it is there and a text.
const std::string* captionText(const nlohmann::json& answer) {
    if (!answer.is_object() || !answer.contains("choices"))
        return nullptr;
    const nlohmann::json& choices = answer["choices"];
    if (!choices.is_array() || choices.empty() || !choices[0].is_object() || !choices[0].contains("message"))
        return nullptr;
    const nlohmann::json& message = choices[0]["message"];
    if (!message.is_object() || !message.contains("content") || !message["content"].is_string())
        return nullptr;
    return &message["content"].get_ref<const std::string&>();
}

} // namespace

OpenRouterCaptioner::OpenRouterCaptioner(std::string apiKey, std::string model,
                                         std::optional<std::string> guidance,
                                         std::shared_ptr<const HTTPTransport> transport, std::string baseURL)
    : m_apiKey(std::move(apiKey))
    , m_model(std::move(model))
    , m_guidance(std::move(guidance))
    , m_transport(std::move(transport))
    , m_baseURL(std::move(baseURL)) {}

std::string OpenRouterCaptioner::caption(const Foundation::Image& image, const SceneTags& /*tags*/,
                                         const std::stop_token& stop) const {
    if (m_apiKey.empty())
        throw CaptionError{BackendUnavailable{"Add your OpenRouter API key in Settings ▸ Captions."}};

    HTTPRequest request;
    request.method = "POST";
    request.url = Http::appendingPath(m_baseURL, "api/v1/chat/completions");
    request.headers = {{"Content-Type", "application/json"},
                       {"Authorization", "Bearer " + m_apiKey},
                       {"HTTP-Referer", applicationURL},
                       {"X-Title", "Roamly"}};
    request.body = requestText(
        m_model, CaptionPrompt::vision(m_guidance),
        ImageEncoding::jpegBase64(image, ImageEncoding::sentMaxDimension, ImageEncoding::sentQuality));
    request.timeout = std::chrono::seconds{120};

    const auto answer = nlohmann::json::parse(requestBody(*m_transport, request, stop), nullptr, false);
    if (const std::string* text = captionText(answer))
        return usableCaption(*text);
    throw CaptionError{EmptyResponse{}};
}

bool OpenRouterCaptioner::testConnection(const std::stop_token& stop) const {
    if (m_apiKey.empty())
        return false;
    HTTPRequest request;
    request.url = Http::appendingPath(m_baseURL, "api/v1/auth/key");
    request.headers = {{"Authorization", "Bearer " + m_apiKey}};
    request.timeout = std::chrono::seconds{8};
    return answersWithSuccess(*m_transport, request, stop);
}

} // namespace Captioning
