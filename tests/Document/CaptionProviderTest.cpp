// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Document/Refusal.h>

#include <gtest/gtest.h>

using Document::AppSettings;
using Document::effectiveProvider;
using Document::privacyConfirmation;
using ProjectModel::AIProvider;
using ProjectModel::ProjectSettings;

TEST(CaptionProviderTest, AProjectWithoutItsOwnProviderUsesTheUsersDefault) {
    AppSettings user;
    user.defaultAIProvider = AIProvider::ollama;
    EXPECT_EQ(effectiveProvider(ProjectSettings{}, user), AIProvider::ollama);
    EXPECT_EQ(effectiveProvider(ProjectSettings{}, AppSettings{}), AIProvider::apple);
}

TEST(CaptionProviderTest, AProjectsOwnProviderWins) {
    AppSettings user;
    user.defaultAIProvider = AIProvider::openRouter;
    ProjectSettings project;
    project.aiProvider = AIProvider::ollama;
    EXPECT_EQ(effectiveProvider(project, user), AIProvider::ollama);
}

TEST(CaptionProviderTest, OnlyGoingOverToTheCloudAsks) {
    EXPECT_TRUE(privacyConfirmation(AIProvider::openRouter, AIProvider::apple));
    EXPECT_TRUE(privacyConfirmation(AIProvider::openRouter, AIProvider::ollama));
    EXPECT_FALSE(privacyConfirmation(AIProvider::openRouter, AIProvider::openRouter));
    EXPECT_FALSE(privacyConfirmation(AIProvider::apple, AIProvider::openRouter));
    EXPECT_FALSE(privacyConfirmation(AIProvider::ollama, AIProvider::apple));
}

TEST(CaptionProviderTest, TheQuestionSaysWhoGetsThePhotos) {
    const auto confirmation = privacyConfirmation(AIProvider::openRouter, AIProvider::apple);
    ASSERT_TRUE(confirmation);
    EXPECT_EQ(confirmation->provider, AIProvider::openRouter);
    EXPECT_EQ(confirmation->title, "Privacy: photos leave your computer");
    EXPECT_EQ(confirmation->message,
              "OpenRouter (cloud) captions in the cloud. Each selected photo is uploaded to generate its "
              "caption — it does not stay on your computer. Built-in and Ollama caption locally instead.");
    EXPECT_EQ(confirmation->agreement, "Use OpenRouter (cloud)");
}

TEST(CaptionProviderTest, OnlyACloudProviderInEffectAlerts) {
    EXPECT_EQ(Document::privacyAlert(AIProvider::openRouter),
              "Privacy alert — Photos are sent to OpenRouter (cloud)");
    EXPECT_FALSE(Document::privacyAlert(AIProvider::ollama));
    EXPECT_FALSE(Document::privacyAlert(AIProvider::apple));
}

TEST(CaptionProviderTest, AProjectSaysWhetherCaptionsAreGeneratedAndOtherwiseTheUser) {
    AppSettings user;
    ProjectSettings project;
    EXPECT_TRUE(Document::allowsAICaptions(project, user));
    user.aiCaptionsEnabled = false;
    EXPECT_FALSE(Document::allowsAICaptions(project, user));
    project.aiCaptionsEnabled = true;
    EXPECT_TRUE(Document::allowsAICaptions(project, user));
}

TEST(CaptionProviderTest, GeneratingIsExplainedOrRefusedInTheSameWords) {
    ProjectSettings project;
    project.aiProvider = AIProvider::ollama;
    EXPECT_EQ(Document::generateCaptionsHelp(project, AppSettings{}),
              "Generate captions for the selected photos with Ollama (local)");
    EXPECT_NO_THROW(Document::checkAllowsAICaptions(project, AppSettings{}));
    project.aiCaptionsEnabled = false;
    const std::string refused = "Turn on “Generate captions with AI” in Project Settings first";
    EXPECT_EQ(Document::generateCaptionsHelp(project, AppSettings{}), refused);
    try {
        Document::checkAllowsAICaptions(project, AppSettings{});
        FAIL();
    } catch (const Document::Refusal& refusal) {
        EXPECT_EQ(refusal.kind(), Document::Refusal::Kind::aiCaptionsOff);
        EXPECT_EQ(refusal.what(), refused);
    }
}
