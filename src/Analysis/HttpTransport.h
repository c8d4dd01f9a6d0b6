#pragma once

#include <functional>
#include <map>
#include <stop_token>
#include <string>

namespace Analysis {

/// A GET request.
struct HttpRequest {
    std::string url;
    /// "Name: value" each.
    std::map<std::string, std::string> headers;
};

struct HttpResponse {
    int status = 0;
    /// Names in lower case.
    std::map<std::string, std::string> headers;
    std::string body;
};

/// Sends a request and waits for the answer, whatever its status. Throws GeocodingError when there is none;
/// `stop` ends the request at once. A parameter wherever something is asked over the network.
using HttpTransport = std::function<HttpResponse(const HttpRequest&, const std::stop_token&)>;

/// On libcurl: http and https, certificates verified, redirects within these followed, twenty seconds a
/// request, bodies up to a megabyte. Thread-safe.
[[nodiscard]] HttpTransport curlTransport();

} // namespace Analysis
