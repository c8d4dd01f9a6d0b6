// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Suggestion.h>

#include <gtest/gtest.h>

#include <array>

using CommandLine::suggestion;

namespace {

constexpr std::array<std::string_view, 4> candidates{"export", "import", "select", "deselect"};

} // namespace

TEST(SuggestionTest, NamesTheCandidateThatIsNearest) {
    EXPECT_EQ(suggestion("exprot", candidates), " Did you mean export?");
    EXPECT_EQ(suggestion("imprt", candidates), " Did you mean import?");
    EXPECT_EQ(suggestion("selct", candidates), " Did you mean select?");
}

TEST(SuggestionTest, NamesTheCandidateThatWasBegun) {
    EXPECT_EQ(suggestion("des", candidates), " Did you mean deselect?");
}

TEST(SuggestionTest, StaysSilentWhenNothingIsNear) {
    EXPECT_EQ(suggestion("frobnicate", candidates), "");
    EXPECT_EQ(suggestion("", candidates), "");
    EXPECT_EQ(suggestion(std::string(100000, 'x'), candidates), "");
}
