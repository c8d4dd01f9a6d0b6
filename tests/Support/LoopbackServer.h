// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// A real HTTP server on the loopback that answers as it is told and remembers what arrived.
class LoopbackServer {
public:
    struct Request {
        std::string method;
        std::string path;
        /// As they were sent: order and spelling.
        std::vector<std::pair<std::string, std::string>> headers;
        std::string body;

        [[nodiscard]] std::string header(const std::string& name) const;
        [[nodiscard]] std::vector<std::string> headerNames() const;
    };

    struct Answer {
        /// The whole response, status line included; `ok` and `status` make usual ones. One without a
        /// Content-Length ends with the connection.
        std::string bytes;
        /// Waited before each piece.
        std::chrono::milliseconds delay{0};
        /// How many bytes go out at once; 0 sends all of them together.
        std::size_t pieceLength = 0;
        /// Never answers; the connection stays open until the server ends.
        bool silent = false;
    };

    static Answer ok(const std::string& body);
    static Answer status(int status, const std::string& extraHeaders = "", const std::string& body = "");

    explicit LoopbackServer(std::function<Answer(const Request&)> answer);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// "http://127.0.0.1:PORT", or with another name of this machine.
    [[nodiscard]] std::string url(const std::string& host = "127.0.0.1") const;
    [[nodiscard]] std::vector<Request> requests() const;
    /// How many connections were opened.
    [[nodiscard]] std::size_t connections() const;
    /// Whether that many requests arrived within five seconds.
    [[nodiscard]] bool waitForRequests(std::size_t count) const;

private:
    void acceptConnections();
    void serve(int connection);

    std::function<Answer(const Request&)> m_answer;
    int m_socket = -1;
    int m_port = 0;
    std::atomic<bool> m_ending = false;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_arrived;
    std::vector<Request> m_requests;
    std::vector<int> m_connections;
    std::vector<std::thread> m_servers;
    std::thread m_acceptor;
};
