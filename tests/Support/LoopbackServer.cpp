// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Support/LoopbackServer.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <optional>
#include <stdexcept>

namespace {

std::string lower(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// The next request on the connection; what follows it stays in `pending`.
std::optional<LoopbackServer::Request> readRequest(int connection, std::string& pending) {
    const auto receive = [&] {
        char buffer[65536];
        const ssize_t count = ::recv(connection, buffer, sizeof buffer, 0);
        if (count <= 0)
            return false;
        pending.append(buffer, static_cast<std::size_t>(count));
        return true;
    };
    std::size_t headEnd = 0;
    while ((headEnd = pending.find("\r\n\r\n")) == std::string::npos) {
        if (!receive())
            return std::nullopt;
    }
    LoopbackServer::Request request;
    const std::string head = pending.substr(0, headEnd + 2);
    pending.erase(0, headEnd + 4);
    std::size_t lineStart = 0;
    for (std::size_t lineEnd = 0; (lineEnd = head.find("\r\n", lineStart)) != std::string::npos;
         lineStart = lineEnd + 2) {
        const std::string line = head.substr(lineStart, lineEnd - lineStart);
        if (request.method.empty()) {
            const std::size_t space = line.find(' ');
            request.method = line.substr(0, space);
            request.path = line.substr(space + 1, line.rfind(' ') - space - 1);
        } else {
            const std::size_t colon = line.find(": ");
            request.headers.emplace_back(line.substr(0, colon), line.substr(colon + 2));
        }
    }
    const std::string length = request.header("content-length");
    const std::size_t bodyLength = length.empty() ? 0 : std::stoul(length);
    while (pending.size() < bodyLength) {
        if (!receive())
            return std::nullopt;
    }
    request.body = pending.substr(0, bodyLength);
    pending.erase(0, bodyLength);
    return request;
}

} // namespace

std::string LoopbackServer::Request::header(const std::string& name) const {
    for (const auto& [key, value] : headers) {
        if (lower(key) == lower(name))
            return value;
    }
    return {};
}

std::vector<std::string> LoopbackServer::Request::headerNames() const {
    std::vector<std::string> names;
    for (const auto& [name, value] : headers)
        names.push_back(name);
    return names;
}

LoopbackServer::Answer LoopbackServer::ok(const std::string& body) {
    return status(200, "Content-Type: application/json\r\n", body);
}

LoopbackServer::Answer LoopbackServer::status(int status, const std::string& extraHeaders,
                                              const std::string& body) {
    return {"HTTP/1.1 " + std::to_string(status) + " Status\r\n" + extraHeaders +
            "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body};
}

LoopbackServer::LoopbackServer(std::function<Answer(const Request&)> answer)
    : m_answer(std::move(answer)) {
    m_socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (m_socket < 0 || ::bind(m_socket, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        ::listen(m_socket, 16) != 0 ||
        ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("cannot listen on the loopback");
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread{[this] { acceptConnections(); }};
}

LoopbackServer::~LoopbackServer() {
    m_ending = true;
    ::shutdown(m_socket, SHUT_RDWR);
    m_acceptor.join();
    ::close(m_socket);
    {
        const std::lock_guard lock{m_mutex};
        for (const int connection : m_connections)
            ::shutdown(connection, SHUT_RDWR);
    }
    for (std::thread& server : m_servers)
        server.join();
    for (const int connection : m_connections)
        ::close(connection);
}

std::string LoopbackServer::url(const std::string& host) const {
    return "http://" + host + ":" + std::to_string(m_port);
}

std::vector<LoopbackServer::Request> LoopbackServer::requests() const {
    const std::lock_guard lock{m_mutex};
    return m_requests;
}

std::size_t LoopbackServer::connections() const {
    const std::lock_guard lock{m_mutex};
    return m_connections.size();
}

bool LoopbackServer::waitForRequests(std::size_t count) const {
    std::unique_lock lock{m_mutex};
    return m_arrived.wait_for(lock, std::chrono::seconds{5}, [&] { return m_requests.size() >= count; });
}

void LoopbackServer::acceptConnections() {
    while (!m_ending) {
        const int connection = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            return;
        const std::lock_guard lock{m_mutex};
        m_connections.push_back(connection);
        m_servers.emplace_back([this, connection] { serve(connection); });
    }
}

void LoopbackServer::serve(int connection) {
    std::string pending;
    while (const std::optional<Request> request = readRequest(connection, pending)) {
        {
            const std::lock_guard lock{m_mutex};
            m_requests.push_back(*request);
        }
        m_arrived.notify_all();
        const Answer answer = m_answer(*request);
        if (answer.silent)
            continue;
        const std::size_t piece = answer.pieceLength == 0 ? answer.bytes.size() : answer.pieceLength;
        for (std::size_t sent = 0; sent < answer.bytes.size() && !m_ending; sent += piece) {
            std::this_thread::sleep_for(answer.delay);
            const std::string bytes = answer.bytes.substr(sent, piece);
            if (::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
                return;
        }
        if (answer.bytes.find("Content-Length") == std::string::npos ||
            answer.bytes.find("HALF") != std::string::npos) {
            ::shutdown(connection, SHUT_RDWR);
            return;
        }
    }
}
