#include "LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace Analysis {

LoopbackServer::LoopbackServer(Handler handler)
    : m_handler(std::move(handler))
    , m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    if (::bind(m_socket, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(m_socket, 8) != 0 ||
        ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no loopback");
    m_port = ntohs(address.sin_port);
    m_thread = std::jthread([this](const std::stop_token& stop) { serve(stop); });
}

LoopbackServer::~LoopbackServer() {
    m_thread.request_stop();
    m_thread.join();
    ::close(m_socket);
}

std::string LoopbackServer::url() const {
    return "http://127.0.0.1:" + std::to_string(m_port);
}

std::vector<std::string> LoopbackServer::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void LoopbackServer::serve(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        pollfd waiting{m_socket, POLLIN, 0};
        if (::poll(&waiting, 1, 20) <= 0)
            continue;
        const int connection = ::accept(m_socket, nullptr, nullptr);
        if (connection < 0)
            continue;
        std::string head;
        std::array<char, 4096> buffer{};
        while (head.find("\r\n\r\n") == std::string::npos) {
            const ssize_t count = ::recv(connection, buffer.data(), buffer.size(), 0);
            if (count <= 0)
                break;
            head.append(buffer.data(), static_cast<std::size_t>(count));
        }
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(head);
        }
        const std::string answer = m_handler(head);
        std::size_t sent = 0;
        while (sent < answer.size()) {
            const ssize_t count =
                ::send(connection, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
            if (count <= 0)
                break;
            sent += static_cast<std::size_t>(count);
        }
        ::close(connection);
    }
}

} // namespace Analysis
