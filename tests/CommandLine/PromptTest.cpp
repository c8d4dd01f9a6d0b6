// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* question = "OpenRouter API key: ";
constexpr const char* controlC = "\x03";

/// Questions at a terminal, as a shell starts the program there.
class PromptTest : public EndToEndTest {
protected:
    PromptTest() {
        // No bus of the machine that runs the tests is to be asked.
        program.setEnvironment("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }
    Ran setKey(const std::vector<Program::Typing>& typings) {
        return program.converse({"settings", "key", "set"}, typings);
    }
};

} // namespace

TEST_F(PromptTest, ASecretIsNotShownWhileItIsTyped) {
    const Ran ran = setKey({{question, "sk-or-v1-secret\n"}});
    EXPECT_THAT(ran.err, HasSubstr(question));
    EXPECT_THAT(ran.err + ran.out, Not(HasSubstr("secret")));
    // It was read: what is missing is the keyring.
    EXPECT_THAT(ran.err, HasSubstr("There is no Secret Service"));
    EXPECT_EQ(ran.status, 1);
    EXPECT_TRUE(ran.terminalEchoes);
}

TEST_F(PromptTest, AnOrdinaryAnswerIsShown) {
    makeProject();
    const Ran ran = program.converse({"set", "p.roamly", "aiProvider", "openRouter"}, {{"[y/N] ", "nope\n"}});
    EXPECT_THAT(ran.err, HasSubstr("[y/N] nope"));
    EXPECT_EQ(ran.status, 1);
}

TEST_F(PromptTest, ControlCAtASecretQuestionEndsAndLetsTheTerminalShowAgain) {
    const Ran ran = setKey({{question, std::string{"sk-half"} + controlC}});
    EXPECT_EQ(ran.status, 130);
    EXPECT_THAT(ran.err, HasSubstr("roamly: Interrupted."));
    EXPECT_THAT(ran.err, Not(HasSubstr("sk-half")));
    EXPECT_TRUE(ran.terminalEchoes);
}

TEST_F(PromptTest, ControlCTwiceDoesSoToo) {
    for (int i = 0; i < 5; ++i) {
        const Ran ran = setKey({{question, std::string{controlC} + controlC}});
        EXPECT_EQ(ran.status, 130);
        EXPECT_TRUE(ran.terminalEchoes);
    }
}

TEST_F(PromptTest, ControlCAtAnOrdinaryQuestionChangesNothing) {
    makeProject();
    const std::string before = text("p.roamly");
    const Ran ran = program.converse({"set", "p.roamly", "aiProvider", "openRouter"}, {{"[y/N] ", controlC}});
    EXPECT_EQ(ran.status, 130);
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(PromptTest, AnEmptySecretIsRefused) {
    const Ran ran = setKey({{question, " \n"}});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("No key was given"));
    EXPECT_TRUE(ran.terminalEchoes);
}

TEST_F(PromptTest, TheEndOfInputIsNoSecretEither) {
    const Ran ran = setKey({{question, "\x04"}});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("No key was given"));
    EXPECT_TRUE(ran.terminalEchoes);
}
