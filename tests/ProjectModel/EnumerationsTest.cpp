// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/AIProvider.h>
#include <ProjectModel/ChapterStyle.h>
#include <ProjectModel/Provenance.h>

#include <gtest/gtest.h>

#include <vector>

namespace ProjectModel {
namespace {

TEST(ProvenanceTest, HasTheRawValuesOfTheFileFormat) {
    EXPECT_EQ(rawValue(Provenance::proposed), "proposed");
    EXPECT_EQ(rawValue(Provenance::geocoded), "geocoded");
    EXPECT_EQ(rawValue(Provenance::inferred), "inferred");
    EXPECT_EQ(rawValue(Provenance::generated), "generated");
    EXPECT_EQ(rawValue(Provenance::user), "user");
}

TEST(ProvenanceTest, IsMadeFromItsRawValuesOnly) {
    for (const Provenance provenance : {Provenance::proposed, Provenance::geocoded, Provenance::inferred,
                                        Provenance::generated, Provenance::user})
        EXPECT_EQ(provenanceFromRawValue(rawValue(provenance)), provenance);
    for (const char* text : {"", "User", "users", "user ", "0"})
        EXPECT_EQ(provenanceFromRawValue(text), std::nullopt) << text;
}

TEST(AIProviderTest, ListsItsCasesInTheOrderOfPickersWithTheirNames) {
    std::vector<std::string_view> rawValues;
    std::vector<std::string_view> names;
    for (const AIProvider provider : allAIProviders) {
        rawValues.push_back(rawValue(provider));
        names.push_back(displayName(provider));
        EXPECT_EQ(aiProviderFromRawValue(rawValue(provider)), provider);
    }
    EXPECT_EQ(rawValues, (std::vector<std::string_view>{"apple", "ollama", "openRouter"}));
    EXPECT_EQ(names, (std::vector<std::string_view>{"Built-in (on-device)", "Ollama (local)",
                                                    "OpenRouter (cloud)"}));
}

TEST(AIProviderTest, SendsPhotosToTheCloudOnlyWithOpenRouter) {
    EXPECT_FALSE(sendsPhotosToCloud(AIProvider::apple));
    EXPECT_FALSE(sendsPhotosToCloud(AIProvider::ollama));
    EXPECT_TRUE(sendsPhotosToCloud(AIProvider::openRouter));
}

TEST(AIProviderTest, IsNotMadeFromAnUnknownRawValue) {
    for (const char* text : {"", "OpenRouter", "openrouter", "Ollama (local)"})
        EXPECT_EQ(aiProviderFromRawValue(text), std::nullopt) << text;
}

TEST(ChapterStyleTest, ListsItsCasesInTheOrderOfPickersWithTheirNames) {
    ASSERT_EQ(allChapterStyles.size(), 2U);
    EXPECT_EQ(rawValue(allChapterStyles[0]), "card");
    EXPECT_EQ(rawValue(allChapterStyles[1]), "overlay");
    EXPECT_EQ(displayName(ChapterStyle::card), "Separate title slide");
    EXPECT_EQ(displayName(ChapterStyle::overlay), "Overlay on first photo");
}

TEST(ChapterStyleTest, IsMadeFromItsRawValuesOnly) {
    for (const ChapterStyle style : allChapterStyles)
        EXPECT_EQ(chapterStyleFromRawValue(rawValue(style)), style);
    for (const char* text : {"", "Card", "slide"})
        EXPECT_EQ(chapterStyleFromRawValue(text), std::nullopt) << text;
}

} // namespace
} // namespace ProjectModel
