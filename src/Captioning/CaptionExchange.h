// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/HTTPTransport.h>

#include <stop_token>
#include <string>

namespace Captioning {

/// Sends the request and returns the body of a successful answer; the failures are the CaptionErrors that
/// both network backends share.
[[nodiscard]] std::string requestBody(const HTTPTransport& transport, const HTTPRequest& request,
                                      const std::stop_token& stop);

/// The caption without white space around it; throws CaptionError with `EmptyResponse` when nothing is left.
[[nodiscard]] std::string usableCaption(const std::string& text);

/// Whether the request gets an answer of success. Never fails.
[[nodiscard]] bool answersWithSuccess(const HTTPTransport& transport, const HTTPRequest& request,
                                      const std::stop_token& stop);

} // namespace Captioning
