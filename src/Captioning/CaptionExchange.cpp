// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionError.h>
#include <Captioning/CaptionExchange.h>
#include <Foundation/Text.h>

namespace Captioning {

std::string requestBody(const HTTPTransport& transport, const HTTPRequest& request,
                        const std::stop_token& stop) {
    HTTPResponse response;
    try {
        response = transport.send(request, stop);
    } catch (const TransportError& error) {
        throw CaptionError{TransportFailure{error.what()}};
    }
    if (response.status && !response.isSuccess())
        throw CaptionError{HttpFailure{*response.status}};
    return response.body;
}

std::string usableCaption(const std::string& text) {
    const std::string_view caption = Foundation::trimmed(text);
    if (caption.empty())
        throw CaptionError{EmptyResponse{}};
    return std::string{caption};
}

bool answersWithSuccess(const HTTPTransport& transport, const HTTPRequest& request,
                        const std::stop_token& stop) {
    try {
        return transport.send(request, stop).isSuccess();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace Captioning
