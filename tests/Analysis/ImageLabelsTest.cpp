// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "VisionFiles.h"

#include <Analysis/NetworkFile.h>
#include <Analysis/VisionClassifier.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace Analysis {
namespace {

class ImageLabelsTest : public testing::Test {
protected:
    ImageLabels table(const std::string& text) {
        std::ofstream(m_folder / "labels.bin", std::ios::binary) << wrapped(text);
        return ImageLabels(m_folder / "labels.bin");
    }

private:
    TemporaryFolder m_folder;
};

TEST_F(ImageLabelsTest, AddsUpTheClassesThatShareAWord) {
    const ImageLabels labels = table("# words\n0\thusky dog\n1\tpug dog\n3\tice_cream\n");
    const std::vector<float> scores{0.25F, 0.5F, 0.05F, 0.2F};
    const auto found = labels.labels(scores);
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[0].identifier, "dog");
    EXPECT_FLOAT_EQ(found[0].confidence, 0.75F);
    EXPECT_EQ(found[1].identifier, "pug");
    EXPECT_EQ(found[2].identifier, "husky");
    EXPECT_EQ(found[3].identifier, "ice_cream");
    EXPECT_FLOAT_EQ(found[3].confidence, 0.2F);
}

TEST_F(ImageLabelsTest, GivesManyUnlikelyClassesNoCommonWord) {
    std::string text;
    for (int i = 0; i < 50; ++i)
        text += std::to_string(i) + "\tdog\n";
    const auto found = table(text).labels(std::vector<float>(50, 0.02F));
    EXPECT_EQ(found[0].confidence, 0);
}

TEST_F(ImageLabelsTest, RefusesATableThatIsNone) {
    for (const char* text : {"", "# only words\n", "dog\t1\n", "12 dog\n", "12\n", "99999\tdog\n"})
        EXPECT_THROW(table(text), NetworkFileError) << text;
}

TEST_F(ImageLabelsTest, NamesMostClassesInLowerCaseWordsJoinedByUnderscores) {
    for (const ImageLabel& label : sharedLabels().labels(std::vector<float>(1000, 0.0F)))
        EXPECT_EQ(label.identifier.find_first_not_of("abcdefghijklmnopqrstuvwxyz_-'"), std::string::npos)
            << label.identifier;
    int named = 0;
    for (std::size_t i = 0; i < 1000; i += 5) {
        std::vector<float> scores(1000, 0.0F);
        scores[i] = 1;
        named += sharedLabels().labels(scores)[0].confidence > 0;
    }
    EXPECT_GE(named, 130);
    EXPECT_LE(named, 170);
}

TEST_F(ImageLabelsTest, SaysNothingAboutAnEmptyImage) {
    EXPECT_FALSE(VisionClassifier(sharedNetwork(), sharedLabels())(Foundation::Image{}));
}

} // namespace
} // namespace Analysis
