// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/URLSessionTransport.h>
#include <Roamly/Platform/ConnectionTest.h>
#include <Support/LoopbackServer.h>

#include <gtest/gtest.h>

namespace {

namespace ConnectionTest = Platform::ConnectionTest;

class ConnectionTestTest : public testing::Test {
protected:
    LoopbackServer::Answer answer = LoopbackServer::ok("{}");
    LoopbackServer server{[this](const LoopbackServer::Request&) { return answer; }};
    ConnectionTest::Transport transport = std::make_shared<Captioning::URLSessionTransport>();
};

} // namespace

TEST_F(ConnectionTestTest, AsksTheServerThatWasTyped) {
    const auto connected = ConnectionTest::ollama(server.url(), "llava", transport);
    EXPECT_TRUE(connected.isGood);
    EXPECT_EQ(connected.text, "Connected ✓");
    EXPECT_EQ(server.requests().size(), 1U);
    answer = LoopbackServer::status(500);
    const auto refused = ConnectionTest::ollama(server.url(), "llava", transport);
    EXPECT_FALSE(refused.isGood);
    EXPECT_EQ(refused.text, "Not reachable");
}

TEST_F(ConnectionTestTest, WhatIsNoAddressIsNotReachable) {
    for (const char* typed : {"", "host", "http://", "http://127.0.0.1:1"})
        EXPECT_EQ(ConnectionTest::ollama(typed, "llava", transport).text, "Not reachable") << typed;
}

TEST_F(ConnectionTestTest, TheServiceSaysWhetherTheTypedKeyIsValid) {
    const auto valid = ConnectionTest::openRouter("typed", "some/model", transport, server.url());
    EXPECT_TRUE(valid.isGood);
    EXPECT_EQ(valid.text, "Key valid ✓");
    EXPECT_EQ(server.requests().at(0).header("Authorization"), "Bearer typed");
    answer = LoopbackServer::status(401);
    const auto invalid = ConnectionTest::openRouter("typed", "some/model", transport, server.url());
    EXPECT_FALSE(invalid.isGood);
    EXPECT_EQ(invalid.text, "Invalid key or offline");
}

TEST_F(ConnectionTestTest, WithoutAKeyNothingIsAsked) {
    EXPECT_EQ(ConnectionTest::openRouter("", "some/model", transport, server.url()).text,
              "Invalid key or offline");
    EXPECT_TRUE(server.requests().empty());
}
