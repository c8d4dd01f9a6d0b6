// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Quantities.h>

#include <gtest/gtest.h>

namespace Sheets {
namespace {

TEST(Quantities, LengthsAreToTheSecond) {
    EXPECT_EQ(lengthText(0).toStdString(), "0:00");
    EXPECT_EQ(lengthText(59.6).toStdString(), "1:00");
    EXPECT_EQ(lengthText(420).toStdString(), "7:00");
    EXPECT_EQ(lengthText(3725).toStdString(), "1:02:05");
    EXPECT_EQ(lengthText(-1).toStdString(), "0:00");
}

TEST(Quantities, TimesAreAsExactAsAGuess) {
    EXPECT_EQ(roughTimeText(10).toStdString(), "less than a minute");
    EXPECT_EQ(roughTimeText(50).toStdString(), "about 1 minute");
    EXPECT_EQ(roughTimeText(190).toStdString(), "about 3 minutes");
    EXPECT_EQ(roughTimeText(3599).toStdString(), "about 1 hour");
    EXPECT_EQ(roughTimeText(4200).toStdString(), "about 1 hour 10 minutes");
    EXPECT_EQ(roughTimeText(7200).toStdString(), "about 2 hours");
}

TEST(Quantities, SizesHaveTwoFigures) {
    EXPECT_EQ(roughSizeText(1000).toStdString(), "less than 1 MB");
    EXPECT_EQ(roughSizeText(1.24e6).toStdString(), "about 1.2 MB");
    EXPECT_EQ(roughSizeText(352e6).toStdString(), "about 350 MB");
    EXPECT_EQ(roughSizeText(999e6).toStdString(), "about 1.0 GB");
    EXPECT_EQ(roughSizeText(12.4e9).toStdString(), "about 12 GB");
}

TEST(Quantities, PhotosAreCounted) {
    EXPECT_EQ(photoCountText(0).toStdString(), "0 photos");
    EXPECT_EQ(photoCountText(1).toStdString(), "1 photo");
    EXPECT_EQ(photoCountText(20000).toStdString(), "20,000 photos");
}

TEST(Quantities, SecondsAreAsShortAsCanBe) {
    EXPECT_EQ(secondsText(5).toStdString(), "5 s");
    EXPECT_EQ(secondsText(4.25).toStdString(), "4.25 s");
    EXPECT_EQ(secondsText(4.1999999).toStdString(), "4.2 s");
}

} // namespace
} // namespace Sheets
