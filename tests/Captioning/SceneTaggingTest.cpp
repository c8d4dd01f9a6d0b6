// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/SceneTagging.h>

#include <gtest/gtest.h>

namespace {

using namespace Captioning;

std::vector<std::string> tagsOf(std::vector<ClassObservation> observations, float threshold = 0.1F,
                                int most = 6) {
    const VisionSceneTagger tagger{threshold, most, [&](const Foundation::Image&) { return observations; }};
    return tagger.tags({});
}

TEST(VisionSceneTaggerTest, KeepsAConfidenceAtTheThresholdAndPutsTheLikeliestFirst) {
    EXPECT_EQ(tagsOf({{"dropped", 0.09F}, {"kept", 0.1F}, {"first", 0.5F}}),
              (std::vector<std::string>{"first", "kept"}));
}

TEST(VisionSceneTaggerTest, KeepsTheClassifiersOrderAmongEqualConfidences) {
    EXPECT_EQ(tagsOf({{"a", 0.3F}, {"b", 0.3F}, {"c", 0.4F}, {"d", 0.3F}}),
              (std::vector<std::string>{"c", "a", "b", "d"}));
}

TEST(VisionSceneTaggerTest, KeepsAtMostTheLargestNumberOfTags) {
    EXPECT_EQ(tagsOf({{"a", 0.9F}, {"b", 0.8F}, {"c", 0.7F}}, 0.1F, 2), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(tagsOf({{"a", 0.9F}}, 0.1F, 0).empty());
}

TEST(VisionSceneTaggerTest, TurnsUnderscoresIntoSpaces) {
    EXPECT_EQ(tagsOf({{"sunset_over_sea", 0.9F}}), (std::vector<std::string>{"sunset over sea"}));
}

TEST(VisionSceneTaggerTest, HasNoTagsWhenClassificationFailsOrIsNotThere) {
    const VisionSceneTagger failing{0.1F, 6, [](const Foundation::Image&) { return std::nullopt; }};
    EXPECT_TRUE(failing.tags({}).empty());
    const VisionSceneTagger without{0.1F, 6, {}};
    EXPECT_TRUE(without.tags({}).empty());
}

TEST(VisionSceneTaggerTest, DropsConfidencesThatAreNotNumbers) {
    EXPECT_TRUE(tagsOf({{"nan", std::numeric_limits<float>::quiet_NaN()}}).empty());
}

} // namespace
