// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionPrompt.h>

#include <gtest/gtest.h>

namespace {

using namespace Captioning;

TEST(CaptionPromptTest, NamesTheTagsToTextModels) {
    EXPECT_EQ(CaptionPrompt::text({"beach", "sunset sky"}, std::nullopt),
              "Write a single short caption (one sentence, no quotes) for a holiday photo that shows: beach, "
              "sunset "
              "sky. Be concrete and natural. Return only the caption.");
}

TEST(CaptionPromptTest, SaysAPhotographWhereThereAreNoTags) {
    EXPECT_EQ(CaptionPrompt::text({}, std::nullopt), "Write a single short caption (one sentence, no quotes) "
                                                     "for a holiday photo that shows: a photograph. Be "
                                                     "concrete and natural. Return only the caption.");
}

TEST(CaptionPromptTest, AddsTrimmedGuidanceWithAFullStopEvenAfterOne) {
    EXPECT_EQ(CaptionPrompt::vision(" \n Formal travel-guide voice. \n"),
              "Write a single short caption (one sentence, no quotes) for this holiday photo. Be concrete "
              "and natural. "
              "Guidance for tone and interpretation: Formal travel-guide voice.. Return only the caption.");
}

TEST(CaptionPromptTest, IgnoresGuidanceOfOnlySpacesAndNewlines) {
    EXPECT_EQ(CaptionPrompt::vision(" \n\t\xC2\xA0 "), CaptionPrompt::vision(std::nullopt));
    EXPECT_EQ(CaptionPrompt::text({"a"}, " \n"), CaptionPrompt::text({"a"}, std::nullopt));
}

} // namespace
