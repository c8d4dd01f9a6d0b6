// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/TimeLeft.h>

#include <gtest/gtest.h>

using Jobs::TimeLeft;
using Jobs::timeLeftText;

TEST(TimeLeft, ItSaysNothingBeforeItHasSeenEnough) {
    TimeLeft left;
    EXPECT_FALSE(left.seconds(0));
    left.progress(0, 0);
    EXPECT_FALSE(left.seconds(5));
    left.progress(1, 0.1);
    EXPECT_FALSE(left.seconds(1));
    left.progress(2, 0.2);
    EXPECT_NEAR(left.seconds(2).value(), 8, 1e-9);
}

TEST(TimeLeft, AStepTooSmallToJudgeBySaysNothing) {
    TimeLeft left;
    left.progress(0, 0);
    left.progress(10, 0.005);
    EXPECT_FALSE(left.seconds(10));
}

TEST(TimeLeft, ItGrowsLessWhileNothingIsHeard) {
    TimeLeft left;
    left.progress(0, 0);
    left.progress(10, 0.5);
    EXPECT_NEAR(left.seconds(14).value(), 6, 1e-9);
    EXPECT_EQ(left.seconds(100), 0);
}

TEST(TimeLeft, ItFollowsTheLatestPace) {
    TimeLeft left;
    for (int second = 0; second <= 40; ++second)
        left.progress(second, 0.01 * second);
    // Twice as fast from here on.
    for (int second = 1; second <= 25; ++second)
        left.progress(40 + second, 0.4 + 0.02 * second);
    EXPECT_NEAR(left.seconds(65).value(), (1 - 0.9) / 0.02, 1);
}

TEST(TimeLeft, ANewStageIsJudgedByItself) {
    TimeLeft left;
    left.progress(0, 0);
    left.progress(100, 1);
    left.progress(101, 0);
    EXPECT_FALSE(left.seconds(101));
    left.progress(105, 0.5);
    EXPECT_NEAR(left.seconds(105).value(), 4, 1e-9);
}

TEST(TimeLeft, TheTextIsRoundedAsPeopleSayIt) {
    EXPECT_EQ(timeLeftText(0), "a few seconds left");
    EXPECT_EQ(timeLeftText(30), "less than a minute left");
    EXPECT_EQ(timeLeftText(60), "about a minute left");
    EXPECT_EQ(timeLeftText(170), "about 3 minutes left");
    EXPECT_EQ(timeLeftText(3590), "about an hour left");
    EXPECT_EQ(timeLeftText(5400), "about 1 h 30 min left");
    EXPECT_EQ(timeLeftText(7300), "about 2 hours left");
}
