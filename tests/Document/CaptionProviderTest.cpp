#include <Roamly/Document/CaptionProvider.h>

#include <gtest/gtest.h>

using Document::AppSettings;
using Document::effectiveProvider;
using Document::needsPrivacyConfirmation;
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
    EXPECT_TRUE(needsPrivacyConfirmation(AIProvider::openRouter, AIProvider::apple));
    EXPECT_TRUE(needsPrivacyConfirmation(AIProvider::openRouter, AIProvider::ollama));
    EXPECT_FALSE(needsPrivacyConfirmation(AIProvider::openRouter, AIProvider::openRouter));
    EXPECT_FALSE(needsPrivacyConfirmation(AIProvider::apple, AIProvider::openRouter));
    EXPECT_FALSE(needsPrivacyConfirmation(AIProvider::ollama, AIProvider::apple));
}

TEST(CaptionProviderTest, TheMessageNamesTheProvider) {
    EXPECT_TRUE(
        Document::privacyConfirmationMessage(AIProvider::openRouter)
            .starts_with("OpenRouter (cloud) captions in the cloud. Each selected photo is uploaded"));
}
