// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Support/LoopbackServer.h>
#include <Support/PrivateKeyring.h>

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* key = "sk-or-v1-a-secret-that-must-not-show";

/// The program, a caption server that answers with the number of the request, and a project of three photos.
class CaptionCommandTest : public EndToEndTest {
protected:
    CaptionCommandTest()
        : server([this](const LoopbackServer::Request& request) { return answer(request); }) {
        makeProject();
        EXPECT_EQ(run({"settings", "ollamaBaseURL", server.url()}).status, 0);
        program.setEnvironment("ROAMLY_OPENROUTER_URL", server.url());
        // No bus of the machine that runs the tests is to be asked.
        program.setEnvironment("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }

    LoopbackServer::Answer numbered(const LoopbackServer::Request& request) {
        const std::string caption = "Caption " + std::to_string(++answered) + ".";
        return LoopbackServer::ok(request.path == "/api/generate"
                                      ? json{{"response", caption}}.dump()
                                      : json{{"choices", {{{"message", {{"content", caption}}}}}}}.dump());
    }

    std::atomic<int> answered = 0;
    std::function<LoopbackServer::Answer(const LoopbackServer::Request&)> answer =
        [this](const LoopbackServer::Request& request) { return numbered(request); };
    LoopbackServer server;
};

/// With a real keyring, on a bus that this process has for good.
class CaptionKeyTest : public CaptionCommandTest {
protected:
    static void SetUpTestSuite() {
        ASSERT_TRUE(PrivateKeyring::isPossible()) << "dbus-daemon and gnome-keyring-daemon are needed";
        s_keyring = std::make_unique<PrivateKeyring>(PrivateKeyring::Daemon::Running);
    }
    static void TearDownTestSuite() { s_keyring.reset(); }
    void SetUp() override {
        const char* const bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
        ASSERT_NE(bus, nullptr);
        program.setEnvironment("DBUS_SESSION_BUS_ADDRESS", bus);
        EXPECT_EQ(run({"settings", "key", "clear"}).status, 0);
    }

    void storeKey() {
        program.setInput(std::string{key} + "\n");
        EXPECT_EQ(run({"settings", "key", "set"}).status, 0);
        program.setInput("");
    }

private:
    static inline std::unique_ptr<PrivateKeyring> s_keyring;
};

} // namespace

TEST_F(CaptionCommandTest, WritesCaptionsIntoTheProject) {
    const json result = done({"caption", "p.roamly", "--provider", "ollama"});
    EXPECT_EQ(result["attempted"], 3);
    EXPECT_EQ(result["cancelled"], false);
    EXPECT_EQ(result["captions"].size(), 3U);
    EXPECT_FALSE(result.contains("errorText"));
    EXPECT_FALSE(result.contains("firstFailure"));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(project()["photos"][i]["caption"], "Caption " + std::to_string(i + 1) + ".");
        EXPECT_EQ(project()["photos"][i]["captionProvenance"], "generated");
    }
    EXPECT_FALSE(project()["settings"].contains("aiProvider"));
}

TEST_F(CaptionCommandTest, ReportsProgressAfterEachPhoto) {
    const std::vector<json> lines = run({"caption", "p.roamly", "--provider", "ollama", "--json"}).json();
    EXPECT_EQ(lines.front(), (json{{"progress", {{"completed", 1}, {"total", 3}}}}));
    EXPECT_EQ(lines.at(lines.size() - 2), (json{{"progress", {{"completed", 3}, {"total", 3}}}}));
}

TEST_F(CaptionCommandTest, KeepsTypedCaptionsAndEveryKindOfText) {
    const std::string text = "Gelato 🍨 “again” — é\\n \"quoted\" \u202Eعربي";
    answer = [&](const LoopbackServer::Request&) {
        return LoopbackServer::ok(json{{"response", text}}.dump());
    };
    ASSERT_EQ(run({"title", "p.roamly", photoID(1), "mine"}).status, 0);
    EXPECT_EQ(done({"caption", "p.roamly", "--provider", "ollama"})["attempted"], 2);
    EXPECT_EQ(project()["photos"][0]["caption"], text);
    EXPECT_EQ(project()["photos"][1]["caption"], "mine");
}

TEST_F(CaptionCommandTest, OnePhotoIsCaptionedEvenOverATypedCaption) {
    ASSERT_EQ(run({"title", "p.roamly", photoID(1), "mine"}).status, 0);
    const json result = done({"caption", "p.roamly", "--provider", "ollama", "--photo", photoID(1)});
    EXPECT_EQ(result["attempted"], 1);
    EXPECT_EQ(project()["photos"][1]["caption"], "Caption 1.");
    EXPECT_EQ(server.requests().size(), 1U);
    expectFailure(2, {"caption", "p.roamly", "--photo", "not-an-id"});
}

TEST_F(CaptionCommandTest, AnUnknownPhotoChangesNothing) {
    const std::string before = text("p.roamly");
    EXPECT_EQ(run({"caption", "p.roamly", "--provider", "ollama", "--photo",
                   "00000000-0000-0000-0000-000000000000"})
                  .status,
              0);
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(CaptionCommandTest, FailsWithTheFirstFailureInWordsAndKeepsTheRest) {
    answer = [this](const LoopbackServer::Request& request) {
        return server.requests().size() == 2 ? LoopbackServer::status(500) : numbered(request);
    };
    const Ran ran = run({"caption", "p.roamly", "--provider", "ollama", "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.result()["firstFailure"], (json{{"http", 500}}));
    EXPECT_EQ(ran.result()["errorText"],
              "Ollama (local) returned HTTP 500. Check the model name and URL in Settings.");
    EXPECT_THAT(ran.err,
                HasSubstr("Ollama (local) returned HTTP 500. Check the model name and URL in Settings."));
    EXPECT_TRUE(project()["photos"][0].contains("caption"));
    EXPECT_TRUE(project()["photos"][2].contains("caption"));
}

TEST_F(CaptionCommandTest, TheProviderInEffectIsTheProjectsThenTheUsersThenTheOnDeviceModel) {
    const Ran onDevice = run({"caption", "p.roamly"});
    EXPECT_EQ(onDevice.status, 1);
    EXPECT_THAT(onDevice.err, HasSubstr("The built-in captions are not available on this computer."));
    ASSERT_EQ(run({"settings", "defaultAIProvider", "ollama"}).status, 0);
    EXPECT_EQ(run({"caption", "p.roamly"}).status, 0);
    ASSERT_EQ(run({"set", "p.roamly", "aiProvider", "apple"}).status, 0);
    EXPECT_EQ(run({"caption", "p.roamly"}).status, 1);
}

TEST_F(CaptionCommandTest, RefusesWithAICaptionsOff) {
    ASSERT_EQ(run({"set", "p.roamly", "aiCaptionsEnabled", "false"}).status, 0);
    const Ran ran = run({"caption", "p.roamly", "--provider", "ollama"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Turn on “Generate captions with AI” in Project Settings first"));
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(CaptionCommandTest, TheCloudMustBeConfirmed) {
    const Ran ran = run({"caption", "p.roamly", "--provider", "openRouter"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Privacy: photos leave your computer"));
    EXPECT_THAT(
        ran.err,
        HasSubstr("OpenRouter (cloud) captions in the cloud. Each selected photo is uploaded to "
                  "generate its caption — it does not stay on your computer. Built-in and Ollama caption "
                  "locally instead."));
    EXPECT_THAT(ran.err, HasSubstr("--yes"));
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(CaptionCommandTest, SaysOnceThatThereIsNoSecretService) {
    const Ran ran = run({"caption", "p.roamly", "--provider", "openRouter", "--yes"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Add your OpenRouter API key in Settings ▸ Captions."));
    const std::size_t first = ran.err.find("Secret Service");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(ran.err.find("Secret Service", first + 1), std::string::npos);
    EXPECT_EQ(run({"settings", "key", "status"}).status, 0);
    program.setInput("a key");
    EXPECT_EQ(run({"settings", "key", "set"}).status, 1);
}

TEST_F(CaptionCommandTest, InterruptedItKeepsWhatArrived) {
    answer = [this](const LoopbackServer::Request& request) {
        LoopbackServer::Answer result = numbered(request);
        result.silent = answered > 1;
        return result;
    };
    const Ran ran = program.interrupt({"caption", "p.roamly", "--provider", "ollama", "--json"},
                                      "\"completed\":1", {SIGINT});
    EXPECT_EQ(ran.status, 130);
    EXPECT_EQ(ran.result()["cancelled"], true);
    EXPECT_EQ(project()["photos"][0]["caption"], "Caption 1.");
    EXPECT_FALSE(project()["photos"][1].contains("caption"));
}

TEST_F(CaptionCommandTest, TestsTheOllamaServer) {
    EXPECT_THAT(run({"settings", "test", "ollama"}).err, HasSubstr("Connected ✓"));
    EXPECT_EQ(done({"settings", "test", "ollama"}), (json{{"ok", true}, {"status", "Connected ✓"}}));
    ASSERT_EQ(run({"settings", "ollamaBaseURL", "http://127.0.0.1:1"}).status, 0);
    const Ran ran = run({"settings", "test", "ollama"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Not reachable"));
    expectFailure(2, {"settings", "test", "apple"});
}

TEST_F(CaptionKeyTest, TheKeyIsSetReadAndCleared) {
    EXPECT_EQ(done({"settings", "key", "status"}), (json{{"stored", false}}));
    storeKey();
    EXPECT_EQ(done({"settings", "key", "status"}), (json{{"stored", true}}));
    EXPECT_EQ(run({"settings", "key", "clear"}).status, 0);
    EXPECT_EQ(done({"settings", "key", "status"}), (json{{"stored", false}}));
    expectFailure(2, {"settings", "key", "forget"});
    expectFailure(1, {"settings", "key", "set"});
    expectFailure(2, {"settings", "key", "set", key});
}

TEST_F(CaptionKeyTest, TheKeyIsTypedUnseenAtATerminal) {
    const Ran ran =
        program.converse({"settings", "key", "set"}, {{"OpenRouter API key: ", std::string{key} + "\n"}});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.err + ran.out, Not(HasSubstr(key)));
    EXPECT_EQ(run({"caption", "p.roamly", "--provider", "openRouter", "--yes"}).status, 0);
    EXPECT_EQ(server.requests().at(0).header("Authorization"), std::string{"Bearer "} + key);
}

TEST_F(CaptionKeyTest, TheCloudServiceGetsTheKeyAndNothingElseDoes) {
    storeKey();
    const Ran ran = run({"caption", "p.roamly", "--provider", "openRouter", "--yes"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.err, HasSubstr("Privacy alert — Photos are sent to OpenRouter (cloud)"));
    EXPECT_EQ(server.requests().at(0).header("Authorization"), std::string{"Bearer "} + key);
    EXPECT_EQ(project()["photos"][0]["caption"], "Caption 1.");
    EXPECT_THAT(ran.err + ran.out + text("p.roamly"), Not(HasSubstr(key)));
}

TEST_F(CaptionKeyTest, TheOpenRouterTestAsksWhetherTheKeyIsValid) {
    const Ran without = run({"settings", "test", "openRouter"});
    EXPECT_EQ(without.status, 1);
    EXPECT_THAT(without.err, HasSubstr("Invalid key or offline"));
    EXPECT_TRUE(server.requests().empty());
    storeKey();
    EXPECT_EQ(done({"settings", "test", "openRouter"})["status"], "Key valid ✓");
    answer = [](const LoopbackServer::Request&) { return LoopbackServer::status(401); };
    EXPECT_EQ(run({"settings", "test", "openRouter"}).status, 1);
}

TEST_F(CaptionKeyTest, AKeyInTheSettingsFileOfAnOlderVersionMovesToTheKeyring) {
    std::ofstream{program.settingsFile(), std::ios::app} << "openRouterKey=" << key << "\n";
    EXPECT_EQ(done({"settings", "key", "status"}), (json{{"stored", true}}));
    std::ifstream file{program.settingsFile()};
    const std::string contents{std::istreambuf_iterator<char>{file}, {}};
    EXPECT_THAT(contents, Not(HasSubstr("openRouterKey")));
    EXPECT_EQ(done({"settings", "key", "status"}), (json{{"stored", true}}));
}
