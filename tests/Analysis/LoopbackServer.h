#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Analysis {

/// A small HTTP server on the loopback, for the requests of one test, one connection after another.
class LoopbackServer {
public:
    /// Gets the request's head and yields all bytes of the answer.
    using Handler = std::function<std::string(const std::string& request)>;

    explicit LoopbackServer(Handler handler);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// "http://127.0.0.1:PORT"
    [[nodiscard]] std::string url() const;
    /// The heads of all requests so far.
    [[nodiscard]] std::vector<std::string> requests() const;

private:
    void serve(const std::stop_token& stop);

    Handler m_handler;
    int m_socket;
    int m_port;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_requests;
    std::jthread m_thread;
};

} // namespace Analysis
