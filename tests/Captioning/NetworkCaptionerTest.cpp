// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionError.h>
#include <Captioning/OllamaCaptioner.h>
#include <Captioning/OpenRouterCaptioner.h>
#include <Captioning/URLSessionTransport.h>
#include <Foundation/Bytes.h>
#include <Foundation/Cancellation.h>
#include <Support/LoopbackServer.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace Captioning;
using Answer = LoopbackServer::Answer;
using Request = LoopbackServer::Request;
using nlohmann::json;

Foundation::Image picture(int width, int height) {
    Foundation::Image image{width, height, {}};
    image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (std::size_t i = 0; i < image.pixels.size(); ++i)
        image.pixels[i] = static_cast<std::uint8_t>(i * 7 % 251);
    return image;
}

std::shared_ptr<const HTTPTransport> transport() {
    return std::make_shared<URLSessionTransport>();
}

OllamaCaptioner ollama(const std::string& url, std::optional<std::string> guidance = {}) {
    return {url, "llava", std::move(guidance), transport()};
}

OpenRouterCaptioner openRouter(const std::string& url, const std::string& key = "sk-secret") {
    return {key, "openai/gpt-4o-mini", std::nullopt, transport(), url};
}

template <typename Action>
std::optional<CaptionError> errorOf(Action&& action) {
    try {
        action();
    } catch (const CaptionError& error) {
        return error;
    }
    return std::nullopt;
}

std::optional<CaptionError> captionErrorOf(const CaptionGenerating& captioner) {
    return errorOf([&] { (void)captioner.caption(picture(8, 6), {}, {}); });
}

const std::string goodOllama = R"({"response":"  Sunset over the bay.\n"})";
const std::string goodOpenRouter = R"({"choices":[{"message":{"content":" A quiet street.\n"}}]})";

/// Width and height from a JPEG's frame header, and its luma quantisation table's first entry.
struct JpegFacts {
    int width = 0;
    int height = 0;
    int firstQuantiser = 0;
};

JpegFacts factsOf(const Foundation::Bytes& jpeg) {
    JpegFacts facts;
    for (std::size_t at = 2; at + 9 < jpeg.size() && jpeg[at] == 0xFF;) {
        const int marker = jpeg[at + 1];
        const std::size_t length = std::size_t{jpeg[at + 2]} << 8 | jpeg[at + 3];
        if (marker == 0xDB && facts.firstQuantiser == 0)
            facts.firstQuantiser = jpeg[at + 5];
        if (marker == 0xC0 || marker == 0xC2) {
            facts.height = jpeg[at + 5] << 8 | jpeg[at + 6];
            facts.width = jpeg[at + 7] << 8 | jpeg[at + 8];
        }
        if (marker == 0xDA)
            break;
        at += 2 + length;
    }
    return facts;
}

JpegFacts sentToOllama(int width, int height) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok(goodOllama); }};
    (void)ollama(server.url()).caption(picture(width, height), {}, {});
    const json body = json::parse(server.requests().at(0).body);
    return factsOf(Foundation::base64Decoded(body["images"][0].get<std::string>()).value());
}

TEST(OllamaCaptionerTest, SendsExactlyTheDescribedRequest) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok(goodOllama); }};
    EXPECT_EQ(ollama(server.url(), "Witty.").caption(picture(20, 10), {}, {}), "Sunset over the bay.");
    const Request request = server.requests().at(0);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/api/generate");
    EXPECT_EQ(request.headerNames(), (std::vector<std::string>{"Host", "Content-Type", "Content-Length"}));
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    const json body = json::parse(request.body);
    EXPECT_EQ(body.size(), 5U);
    EXPECT_EQ(body["model"], "llava");
    EXPECT_EQ(body["prompt"],
              "Write a single short caption (one sentence, no quotes) for this holiday photo. Be concrete "
              "and natural. Guidance for tone and interpretation: Witty.. Return only the caption.");
    EXPECT_EQ(body["images"].size(), 1U);
    EXPECT_EQ(body["stream"], false);
    EXPECT_EQ(body["keep_alive"], "15m");
}

TEST(OllamaCaptionerTest, ShrinksALargePhotoTo768Pixels) {
    const JpegFacts facts = sentToOllama(4000, 3000);
    EXPECT_EQ(facts.width, 768);
    EXPECT_EQ(facts.height, 576);
    // libjpeg's table for quality 70 begins with (16 * 60 + 50) / 100.
    EXPECT_EQ(facts.firstQuantiser, 10);
}

TEST(OllamaCaptionerTest, SendsASmallPhotoAtItsOwnSize) {
    const JpegFacts facts = sentToOllama(500, 300);
    EXPECT_EQ(facts.width, 500);
    EXPECT_EQ(facts.height, 300);
}

TEST(OllamaCaptionerTest, KeepsAStripAtLeastOnePixelWide) {
    const JpegFacts facts = sentToOllama(1, 5000);
    EXPECT_EQ(facts.width, 1);
    EXPECT_EQ(facts.height, 768);
}

TEST(OllamaCaptionerTest, ReachesTheSamePathWithAndWithoutATrailingSlash) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok(goodOllama); }};
    for (const char* suffix : {"", "/", "/proxy", "/proxy/"})
        (void)ollama(server.url() + suffix).caption(picture(4, 4), {}, {});
    EXPECT_EQ(server.requests()[0].path, "/api/generate");
    EXPECT_EQ(server.requests()[1].path, "/api/generate");
    EXPECT_EQ(server.requests()[2].path, "/proxy/api/generate");
    EXPECT_EQ(server.requests()[3].path, "/proxy/api/generate");
}

TEST(OllamaCaptionerTest, ReportsTheStatusOfARefusal) {
    for (const int status : {400, 404, 429, 500, 503}) {
        const LoopbackServer server{[status](const Request&) { return LoopbackServer::status(status); }};
        EXPECT_EQ(captionErrorOf(ollama(server.url())), CaptionError{HttpFailure{status}});
    }
}

TEST(OllamaCaptionerTest, TakesAnAnswerWithoutAUsableCaptionAsEmpty) {
    for (const char* body : {R"({"response":""})", R"({"response":" \n "})", "{}", "[]", "null", "not json",
                             "", R"({"response":42})", R"({"response":null})"}) {
        const LoopbackServer server{[body](const Request&) { return LoopbackServer::ok(body); }};
        EXPECT_EQ(captionErrorOf(ollama(server.url())), CaptionError{EmptyResponse{}}) << body;
    }
}

TEST(OllamaCaptionerTest, ReportsAServerThatIsNotThereAsTransport) {
    std::string url;
    {
        const LoopbackServer gone{[](const Request&) { return LoopbackServer::ok(""); }};
        url = gone.url();
    }
    const std::optional<CaptionError> error = captionErrorOf(ollama(url));
    ASSERT_TRUE(error);
    EXPECT_TRUE(std::holds_alternative<TransportFailure>(error->which()));
    EXPECT_FALSE(std::get<TransportFailure>(error->which()).detail.empty());
}

TEST(OllamaCaptionerTest, ReportsHalfAnAnswerAsTransport) {
    const LoopbackServer server{[](const Request&) {
        return Answer{"HTTP/1.1 200 OK\r\nX-Note: HALF\r\nContent-Length: 400\r\n\r\n{\"resp"};
    }};
    const std::optional<CaptionError> error = captionErrorOf(ollama(server.url()));
    ASSERT_TRUE(error);
    EXPECT_TRUE(std::holds_alternative<TransportFailure>(error->which()));
}

TEST(OllamaCaptionerTest, ReadsAnAnswerThatComesInPieces) {
    const LoopbackServer server{[](const Request&) {
        // More than any one read takes.
        Answer answer = LoopbackServer::ok(goodOllama + std::string(300'000, ' '));
        answer.pieceLength = 1000;
        return answer;
    }};
    EXPECT_EQ(ollama(server.url()).caption(picture(4, 4), {}, {}), "Sunset over the bay.");
}

TEST(OllamaCaptionerTest, RefusesAResponseOfManyMegabytes) {
    const LoopbackServer server{[](const Request&) {
        return LoopbackServer::ok(R"({"response":")" + std::string(5'000'000, 'a') + "\"}");
    }};
    const std::optional<CaptionError> error = captionErrorOf(ollama(server.url()));
    ASSERT_TRUE(error);
    EXPECT_EQ(*error, CaptionError{TransportFailure{"The response is larger than 4 MB."}});
}

TEST(OllamaCaptionerTest, EndsTheRequestInFlightWhenCancelled) {
    const LoopbackServer server{[](const Request&) {
        Answer answer;
        answer.silent = true;
        return answer;
    }};
    std::stop_source stop;
    std::jthread canceller{[&] {
        EXPECT_TRUE(server.waitForRequests(1));
        stop.request_stop();
    }};
    // The server never answers: nothing but the cancellation ends this request in this way.
    EXPECT_THROW((void)ollama(server.url()).caption(picture(4, 4), {}, stop.get_token()),
                 Foundation::Cancelled);
}

TEST(OllamaCaptionerTest, TestsItsConnection) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok("garbage, never read"); }};
    EXPECT_TRUE(ollama(server.url()).testConnection());
    const Request request = server.requests().at(0);
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.path, "/api/tags");
    EXPECT_EQ(request.headerNames(), (std::vector<std::string>{"Host"}));

    const LoopbackServer refusing{[](const Request&) { return LoopbackServer::status(500); }};
    EXPECT_FALSE(ollama(refusing.url()).testConnection());
    EXPECT_FALSE(ollama("http://127.0.0.1:1").testConnection());
    EXPECT_FALSE(ollama("not a url").testConnection());
    EXPECT_FALSE(ollama("file:///etc/passwd").testConnection());
}

TEST(OpenRouterCaptionerTest, SendsExactlyTheDescribedRequest) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok(goodOpenRouter); }};
    EXPECT_EQ(openRouter(server.url()).caption(picture(20, 10), {}, {}), "A quiet street.");
    const Request request = server.requests().at(0);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/api/v1/chat/completions");
    const std::vector<std::string> names = request.headerNames();
    EXPECT_EQ(names, (std::vector<std::string>{"Host", "Content-Type", "Authorization", "HTTP-Referer",
                                               "X-Title", "Content-Length"}));
    EXPECT_EQ(request.header("Authorization"), "Bearer sk-secret");
    EXPECT_EQ(request.header("X-Title"), "Roamly");
    const json body = json::parse(request.body);
    EXPECT_EQ(body.size(), 3U);
    EXPECT_EQ(body["model"], "openai/gpt-4o-mini");
    EXPECT_EQ(body["max_tokens"], 100);
    const json& message = body["messages"].at(0);
    EXPECT_EQ(message["role"], "user");
    EXPECT_EQ(message["content"][0]["type"], "text");
    EXPECT_EQ(message["content"][1]["type"], "image_url");
    EXPECT_TRUE(message["content"][1]["image_url"]["url"].get<std::string>().starts_with(
        "data:image/jpeg;base64,/9j/"));
}

TEST(OpenRouterCaptionerTest, SendsNothingWithoutAKey) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok(goodOpenRouter); }};
    EXPECT_EQ(captionErrorOf(openRouter(server.url(), "")),
              CaptionError{BackendUnavailable{"Add your OpenRouter API key in Settings ▸ Captions."}});
    EXPECT_FALSE(openRouter(server.url(), "").testConnection());
    EXPECT_TRUE(server.requests().empty());
}

TEST(OpenRouterCaptionerTest, TakesAnAnswerWithoutAUsableCaptionAsEmpty) {
    for (const char* body :
         {R"({"choices":[]})", R"({"choices":{}})", R"({"choices":[1]})", R"({"choices":[{"message":[]}]})",
          R"({"choices":[{"message":{"content":null}}]})", R"({"choices":[{"message":{"content":"  "}}]})",
          "{}", "x"}) {
        const LoopbackServer server{[body](const Request&) { return LoopbackServer::ok(body); }};
        EXPECT_EQ(captionErrorOf(openRouter(server.url())), CaptionError{EmptyResponse{}}) << body;
    }
}

TEST(OpenRouterCaptionerTest, NeverShowsTheKeyInAnError) {
    for (const std::string url : {"http://127.0.0.1:1", "http://[bad", "gopher://127.0.0.1"}) {
        const std::optional<CaptionError> error = captionErrorOf(openRouter(url));
        ASSERT_TRUE(error);
        EXPECT_EQ(std::get<TransportFailure>(error->which()).detail.find("sk-secret"), std::string::npos);
    }
}

TEST(OpenRouterCaptionerTest, RefusesAKeyThatWouldAddHeaders) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok(goodOpenRouter); }};
    EXPECT_TRUE(captionErrorOf(openRouter(server.url(), "key\r\nX-Evil: 1")));
    EXPECT_TRUE(server.requests().empty());
}

TEST(OpenRouterCaptionerTest, NeitherKeyNorPhotoFollowsARedirectToAnotherHost) {
    const LoopbackServer other{[](const Request&) { return LoopbackServer::ok(goodOpenRouter); }};
    for (const int status : {301, 302, 303, 307, 308}) {
        const LoopbackServer server{[&](const Request&) {
            return LoopbackServer::status(status, "Location: " + other.url("localhost") + "/elsewhere\r\n");
        }};
        EXPECT_EQ(captionErrorOf(openRouter(server.url())), CaptionError{HttpFailure{status}});
    }
    EXPECT_TRUE(other.requests().empty());
}

TEST(OpenRouterCaptionerTest, FollowsARedirectOnTheSameHost) {
    const LoopbackServer server{[](const Request& request) {
        return request.path == "/v2" ? LoopbackServer::ok(goodOpenRouter)
                                     : LoopbackServer::status(308, "Location: /v2\r\n");
    }};
    EXPECT_EQ(openRouter(server.url()).caption(picture(4, 4), {}, {}), "A quiet street.");
    EXPECT_EQ(server.requests().at(1).method, "POST");
    EXPECT_EQ(server.requests().at(1).header("Authorization"), "Bearer sk-secret");
}

TEST(OpenRouterCaptionerTest, GivesUpOnARedirectThatNeverEnds) {
    const LoopbackServer server{
        [](const Request&) { return LoopbackServer::status(307, "Location: /again\r\n"); }};
    EXPECT_EQ(captionErrorOf(openRouter(server.url())), CaptionError{HttpFailure{307}});
    EXPECT_EQ(server.requests().size(), 1U + URLSessionTransport::maxRedirects);
}

TEST(OpenRouterCaptionerTest, TestsItsKey) {
    const LoopbackServer server{[](const Request&) { return LoopbackServer::ok("{}"); }};
    EXPECT_TRUE(openRouter(server.url()).testConnection());
    const Request request = server.requests().at(0);
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.path, "/api/v1/auth/key");
    EXPECT_EQ(request.headerNames(), (std::vector<std::string>{"Host", "Authorization"}));
    const LoopbackServer refusing{[](const Request&) { return LoopbackServer::status(401); }};
    EXPECT_FALSE(openRouter(refusing.url()).testConnection());
}

} // namespace
