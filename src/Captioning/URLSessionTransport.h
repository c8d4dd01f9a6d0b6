#pragma once

#include <Captioning/HTTPTransport.h>

#include <cstddef>
#include <memory>
#include <string>

namespace Captioning {

/// HTTP and HTTPS by libcurl. Certificates are verified; a redirect is followed only where it stays on the
/// same host, so that neither key nor photo goes to another one; connections are kept between the requests of
/// one transport.
class URLSessionTransport : public HTTPTransport {
public:
    /// A larger response is refused: captions are a sentence.
    static constexpr std::size_t maxResponseBytes = std::size_t{4} * 1024 * 1024;
    static constexpr int maxRedirects = 5;

    URLSessionTransport();
    ~URLSessionTransport() override;
    URLSessionTransport(const URLSessionTransport&) = delete;
    URLSessionTransport& operator=(const URLSessionTransport&) = delete;

    [[nodiscard]] HTTPResponse send(const HTTPRequest& request, const std::stop_token& stop) const override;

private:
    struct Session;
    std::unique_ptr<Session> m_session;
};

/// The URL with a path appended, whether or not it ends in a slash: "http://host/a" and "b/c" give
/// "http://host/a/b/c". A query or fragment stays behind the path.
[[nodiscard]] std::string appendingPath(const std::string& url, const std::string& path);

/// Whether the text is an absolute http or https URL with a host.
[[nodiscard]] bool isHTTPURL(const std::string& text);

} // namespace Captioning
