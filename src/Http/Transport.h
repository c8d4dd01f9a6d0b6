// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace Http {

struct Request {
    std::string method = "GET";
    std::string url;
    /// Sent in this order and with this spelling.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    /// For the whole exchange.
    std::chrono::milliseconds timeout{60'000};
};

struct Response {
    /// Absent when the answer was not an HTTP response.
    std::optional<int> status;
    std::string body;
    /// Names in lower case; of a repeated header the last.
    std::map<std::string, std::string> headers;

    [[nodiscard]] bool isSuccess() const { return status && *status >= 200 && *status <= 299; }
};

/// The request could not be carried out. `what()` is the system's description and never holds a header's
/// value.
class TransportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Carries one request out, once.
class Transport {
public:
    virtual ~Transport() = default;

    /// Throws TransportError, or Foundation::Cancelled as soon as `stop` is triggered. Thread-safe.
    [[nodiscard]] virtual Response send(const Request& request, const std::stop_token& stop) const = 0;
};

} // namespace Http
