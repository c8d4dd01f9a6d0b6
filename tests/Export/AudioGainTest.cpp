// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/AudioGain.h>

#include <gtest/gtest.h>

using Export::AudioGain::gain;

TEST(AudioGainTest, SixtySecondSlideshowFadesAsDescribed) {
    EXPECT_EQ(gain(0, 60, 2, 3), 0.0F);
    EXPECT_EQ(gain(1, 60, 2, 3), 0.5F);
    EXPECT_EQ(gain(2, 60, 2, 3), 1.0F);
    EXPECT_EQ(gain(30, 60, 2, 3), 1.0F);
    EXPECT_EQ(gain(57, 60, 2, 3), 1.0F);
    EXPECT_EQ(gain(58.5, 60, 2, 3), 0.5F);
    EXPECT_EQ(gain(60, 60, 2, 3), 0.0F);
}

TEST(AudioGainTest, IsZeroOutsideTheSlideshow) {
    EXPECT_EQ(gain(-0.001, 60, 0, 0), 0.0F);
    EXPECT_EQ(gain(60.001, 60, 0, 0), 0.0F);
    EXPECT_EQ(gain(0, 0, 2, 3), 0.0F);
    EXPECT_EQ(gain(0, -1, 0, 0), 0.0F);
}

TEST(AudioGainTest, WithoutFadesIsOneFromTheFirstToTheLastInstant) {
    EXPECT_EQ(gain(0, 60, 0, 0), 1.0F);
    EXPECT_EQ(gain(60, 60, 0, 0), 1.0F);
    EXPECT_EQ(gain(30, 60, -1, -1), 1.0F);
}

TEST(AudioGainTest, OverlappingFadesTakeTheSmaller) {
    EXPECT_EQ(gain(1, 3, 2, 3), 0.5F);
    EXPECT_EQ(gain(2, 3, 4, 2), 0.5F);
    EXPECT_FLOAT_EQ(gain(0.9, 3, 2, 3), 0.45F);
}

TEST(AudioGainTest, IsTheQuotientRoundedOnceToSinglePrecision) {
    for (int j = 0; j < 88200; j += 997) {
        const double time = j / 44100.0;
        EXPECT_EQ(gain(time, 60, 2, 3), static_cast<float>(time / 2));
    }
}
