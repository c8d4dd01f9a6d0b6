// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionError.h>
#include <Captioning/CaptionExchange.h>
#include <Captioning/CaptionPrompt.h>
#include <Captioning/ImageEncoding.h>
#include <Captioning/OllamaCaptioner.h>
#include <Foundation/JsonWriter.h>
#include <Http/Url.h>

#include <nlohmann/json.hpp>

#include <utility>

namespace Captioning {

OllamaCaptioner::OllamaCaptioner(std::string baseURL, std::string model, std::optional<std::string> guidance,
                                 std::shared_ptr<const HTTPTransport> transport)
    : m_baseURL(std::move(baseURL))
    , m_model(std::move(model))
    , m_guidance(std::move(guidance))
    , m_transport(std::move(transport)) {}

std::string OllamaCaptioner::caption(const Foundation::Image& image, const SceneTags& /*tags*/,
                                     const std::stop_token& stop) const {
    Foundation::JsonWriter body{Foundation::JsonWriter::Layout::Compact};
    body.beginObject();
    body.member("model", m_model);
    body.member("prompt", CaptionPrompt::vision(m_guidance));
    body.key("images").beginArray();
    body.value(ImageEncoding::jpegBase64(image, ImageEncoding::sentMaxDimension, ImageEncoding::sentQuality));
    body.endArray();
    body.member("stream", false);
    // The model stays loaded between the photos of a batch.
    body.member("keep_alive", "15m");
    body.endObject();

    HTTPRequest request;
    request.method = "POST";
    request.url = Http::appendingPath(m_baseURL, "api/generate");
    request.headers = {{"Content-Type", "application/json"}};
    request.body = body.text();
    // A local model may have to load first.
    request.timeout = std::chrono::seconds{300};

    const auto answer = nlohmann::json::parse(requestBody(*m_transport, request, stop), nullptr, false);
    if (answer.is_object() && answer.contains("response") && answer["response"].is_string())
        return usableCaption(answer["response"].get_ref<const std::string&>());
    throw CaptionError{EmptyResponse{}};
}

bool OllamaCaptioner::testConnection(const std::stop_token& stop) const {
    HTTPRequest request;
    request.url = Http::appendingPath(m_baseURL, "api/tags");
    request.timeout = std::chrono::seconds{5};
    return answersWithSuccess(*m_transport, request, stop);
}

} // namespace Captioning
