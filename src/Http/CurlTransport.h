// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Http/Transport.h>

#include <cstddef>
#include <memory>
#include <mutex>

namespace Http {

/// HTTP and HTTPS by libcurl. Certificates are verified; a redirect is followed only where it stays on the
/// same host, so that neither key, photo nor coordinate goes to another one; connections are kept between the
/// requests of one transport.
class CurlTransport : public Transport {
public:
    /// A larger response is refused: captions are a sentence, places a few names.
    static constexpr std::size_t maxResponseBytes = std::size_t{4} * 1024 * 1024;
    static constexpr int maxRedirects = 5;

    CurlTransport();
    ~CurlTransport() override;
    CurlTransport(const CurlTransport&) = delete;
    CurlTransport& operator=(const CurlTransport&) = delete;

    [[nodiscard]] Response send(const Request& request, const std::stop_token& stop) const override;

private:
    struct Connections;
    [[nodiscard]] std::unique_ptr<Connections> take() const;
    void putBack(std::unique_ptr<Connections> connections) const;
    [[nodiscard]] static Response exchange(Connections& connections, const Request& request,
                                           const std::stop_token& stop);

    mutable std::mutex m_mutex;
    /// Of the last request that ended well.
    mutable std::unique_ptr<Connections> m_idle;
};

} // namespace Http
