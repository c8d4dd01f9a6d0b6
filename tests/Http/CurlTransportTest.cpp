// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Http/CurlTransport.h>
#include <Support/LoopbackServer.h>

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace Http {
namespace {

using Arrived = LoopbackServer::Request;
using Answer = LoopbackServer::Answer;

Request get(const std::string& url) {
    Request request;
    request.url = url;
    return request;
}

Response sent(const Request& request) {
    return CurlTransport{}.send(request, {});
}

Answer silence(const Arrived& /*request*/) {
    Answer answer;
    answer.silent = true;
    return answer;
}

TEST(CurlTransportTest, SendsNothingButWhatTheRequestHolds) {
    const LoopbackServer server{[](const Arrived&) { return LoopbackServer::ok("{}"); }};
    Request request = get(server.url() + "/path?query=1");
    request.method = "POST";
    request.headers = {{"X-First", "1"}, {"accept-is-not-added", "x"}, {"X-Empty", ""}};
    request.body = std::string("with a \0 within", 15);
    EXPECT_TRUE(sent(request).isSuccess());
    const Arrived arrived = server.requests().at(0);
    EXPECT_EQ(arrived.method, "POST");
    EXPECT_EQ(arrived.path, "/path?query=1");
    EXPECT_EQ(arrived.body, request.body);
    std::vector<std::string> names = arrived.headerNames();
    for (std::string& name : names)
        name = name.substr(0, name.find(':'));
    EXPECT_EQ(names, (std::vector<std::string>{"Host", "X-First", "accept-is-not-added", "X-Empty",
                                               "Content-Length"}));
}

TEST(CurlTransportTest, ReturnsAnyStatusWithItsBody) {
    for (const int status : {200, 204, 404, 429, 500}) {
        const std::string body = status == 204 ? "" : "the body";
        const LoopbackServer server{[&](const Arrived&) { return LoopbackServer::status(status, "", body); }};
        const Response response = sent(get(server.url()));
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.body, body);
        EXPECT_EQ(response.isSuccess(), status < 300);
    }
}

TEST(CurlTransportTest, NamesResponseHeadersInLowerCaseWithoutSpacesAround) {
    const LoopbackServer server{
        [](const Arrived&) { return LoopbackServer::status(429, "Retry-After:   12 \r\nX-Colon: a:b\r\n"); }};
    const Response response = sent(get(server.url()));
    EXPECT_EQ(response.headers.at("retry-after"), "12");
    EXPECT_EQ(response.headers.at("x-colon"), "a:b");
}

TEST(CurlTransportTest, ForgetsTheHeadersOfInterimAnswersAndRedirects) {
    const LoopbackServer server{[](const Arrived& request) {
        if (request.path == "/")
            return LoopbackServer::status(302, "X-Redirect: 1\r\nLocation: /there\r\n");
        return Answer{"HTTP/1.1 103 Early Hints\r\nX-Early: 1\r\n\r\nHTTP/1.1 200 OK\r\n"
                      "X-Final: 1\r\nContent-Length: 0\r\n\r\n"};
    }};
    const Response response = sent(get(server.url() + "/"));
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.headers.count("x-redirect"), 0U);
    EXPECT_EQ(response.headers.count("x-early"), 0U);
    EXPECT_EQ(response.headers.count("x-final"), 1U);
}

TEST(CurlTransportTest, KeepsToTheTimeOutOfEachRequest) {
    const LoopbackServer server{silence};
    Request request = get(server.url());
    request.timeout = std::chrono::milliseconds{150};
    EXPECT_THROW((void)sent(request), TransportError);
}

TEST(CurlTransportTest, KeepsTheConnectionBetweenRequests) {
    const LoopbackServer server{[](const Arrived&) { return LoopbackServer::ok("{}"); }};
    const CurlTransport transport;
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(transport.send(get(server.url()), {}).isSuccess());
    EXPECT_EQ(server.requests().size(), 3U);
    EXPECT_EQ(server.connections(), 1U);
}

TEST(CurlTransportTest, OpensANewConnectionWhenTheServerEndedTheLastOne) {
    const LoopbackServer server{
        [](const Arrived&) { return Answer{"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nbody"}; }};
    const CurlTransport transport;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(transport.send(get(server.url()), {}).body, "body");
    EXPECT_EQ(server.connections(), 3U);
}

TEST(CurlTransportTest, ServesSeveralThreadsAtOnce) {
    const LoopbackServer server{[](const Arrived& request) { return LoopbackServer::ok(request.path); }};
    const CurlTransport transport;
    const auto ask = [&](int thread) {
        for (int i = 0; i < 20; ++i) {
            const std::string path = std::string("/").append(std::to_string(thread * 100 + i));
            EXPECT_EQ(transport.send(get(server.url() + path), {}).body, path);
        }
    };
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back(ask, thread);
    threads.clear();
    EXPECT_EQ(server.requests().size(), 80U);
}

TEST(CurlTransportTest, EndsARequestUnderWayWhenStopped) {
    const LoopbackServer server{silence};
    std::stop_source stop;
    const std::jthread stopper{[&] {
        EXPECT_TRUE(server.waitForRequests(1));
        stop.request_stop();
    }};
    EXPECT_THROW((void)CurlTransport{}.send(get(server.url()), stop.get_token()), Foundation::Cancelled);
}

TEST(CurlTransportTest, SendsNothingWhenStoppedBefore) {
    const LoopbackServer server{[](const Arrived&) { return LoopbackServer::ok("{}"); }};
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW((void)CurlTransport{}.send(get(server.url()), stop.get_token()), Foundation::Cancelled);
    EXPECT_EQ(server.connections(), 0U);
}

TEST(CurlTransportTest, ServesAgainAfterARequestThatWasStoppedOrFailed) {
    const LoopbackServer server{[](const Arrived& request) {
        return request.path == "/silent" ? silence(request) : LoopbackServer::ok("{}");
    }};
    const CurlTransport transport;
    EXPECT_TRUE(transport.send(get(server.url()), {}).isSuccess());
    Request request = get(server.url() + "/silent");
    request.timeout = std::chrono::milliseconds{50};
    EXPECT_THROW((void)transport.send(request, {}), TransportError);
    EXPECT_TRUE(transport.send(get(server.url()), {}).isSuccess());
}

TEST(CurlTransportTest, RefusesWhatIsLargerThanItsBound) {
    const LoopbackServer server{[](const Arrived& request) {
        return LoopbackServer::ok(
            std::string(CurlTransport::maxResponseBytes + (request.path == "/more" ? 1 : 0), 'a'));
    }};
    EXPECT_EQ(sent(get(server.url())).body.size(), CurlTransport::maxResponseBytes);
    EXPECT_THROW((void)sent(get(server.url() + "/more")), TransportError);
}

TEST(CurlTransportTest, RefusesHeadersWithALineBreakBeforeAnythingIsSent) {
    const LoopbackServer server{[](const Arrived&) { return LoopbackServer::ok("{}"); }};
    for (const std::string value : {"a\r\nX-Evil: 1", "a\nX-Evil: 1", "a\r"}) {
        Request request = get(server.url());
        request.headers = {{"Authorization", value}};
        EXPECT_THROW((void)sent(request), TransportError);
    }
    EXPECT_TRUE(server.requests().empty());
}

TEST(CurlTransportTest, SpeaksNothingButHttp) {
    for (const char* url :
         {"file:///etc/passwd", "ftp://127.0.0.1/", "gopher://127.0.0.1", "", "nonsense url"})
        EXPECT_THROW((void)sent(get(url)), TransportError) << url;
}

TEST(CurlTransportTest, FollowsNoRedirectToAnotherProtocolOrHost) {
    for (const std::string target : {"file:///etc/passwd", "http://127.0.0.1:1/", "http://other.invalid/"}) {
        const LoopbackServer server{
            [&](const Arrived&) { return LoopbackServer::status(302, "Location: " + target + "\r\n"); }};
        EXPECT_EQ(sent(get(server.url())).status, 302) << target;
    }
}

TEST(CurlTransportTest, RepeatsAPostOnlyWhereTheServerAsksForIt) {
    for (const int status : {301, 302, 303, 307, 308}) {
        const LoopbackServer server{[&](const Arrived& request) {
            return request.path == "/there" ? LoopbackServer::ok("{}")
                                            : LoopbackServer::status(status, "Location: /there\r\n");
        }};
        Request request = get(server.url());
        request.method = "POST";
        request.body = "body";
        EXPECT_TRUE(sent(request).isSuccess());
        EXPECT_EQ(server.requests().at(1).method, status >= 307 ? "POST" : "GET") << status;
        EXPECT_EQ(server.requests().at(1).body, status >= 307 ? "body" : "") << status;
    }
}

TEST(CurlTransportTest, WithstandsAnswersOfAnyBytes) {
    std::mt19937 random(20261120);
    const std::string good =
        "HTTP/1.1 200 OK\r\nContent-Length: 12\r\nX-Name: value\r\n\r\n{\"a\":\"bcd\"}\n";
    std::mutex mutex;
    std::string prepared;
    const LoopbackServer server{[&](const Arrived&) {
        const std::lock_guard lock{mutex};
        return Answer{prepared + "HALF"};
    }};
    int answered = 0;
    for (int round = 0; round < 300; ++round) {
        std::string bytes = good;
        for (int change = 0; change < 1 + round % 6; ++change)
            bytes[random() % bytes.size()] = static_cast<char>(random() % 256);
        bytes.resize(random() % 4 == 0 ? random() % bytes.size() : bytes.size());
        {
            const std::lock_guard lock{mutex};
            prepared = bytes;
        }
        Request request = get(server.url());
        request.timeout = std::chrono::milliseconds{2000};
        try {
            const Response response = sent(request);
            EXPECT_TRUE(response.status.has_value());
            EXPECT_LE(response.body.size(), bytes.size() + 4);
            ++answered;
        } catch (const TransportError& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
    EXPECT_GT(answered, 0);
}

} // namespace
} // namespace Http
