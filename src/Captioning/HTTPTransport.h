#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace Captioning {

struct HTTPRequest {
    std::string method = "GET";
    std::string url;
    /// Sent in this order and with this spelling.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    /// For the whole exchange.
    std::chrono::milliseconds timeout{60'000};
};

struct HTTPResponse {
    /// Absent when the answer was not an HTTP response.
    std::optional<int> status;
    std::string body;

    [[nodiscard]] bool isSuccess() const { return status && *status >= 200 && *status <= 299; }
};

/// The request could not be carried out. `what()` is the system's description and never holds a header's
/// value.
class TransportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Carries one request out, once.
class HTTPTransport {
public:
    virtual ~HTTPTransport() = default;

    /// Throws TransportError, or Foundation::Cancelled as soon as `stop` is triggered. Thread-safe.
    [[nodiscard]] virtual HTTPResponse send(const HTTPRequest& request,
                                            const std::stop_token& stop) const = 0;
};

} // namespace Captioning
