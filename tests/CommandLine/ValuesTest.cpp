// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Values.h>

#include <gtest/gtest.h>

using CommandLine::UsageError;
namespace Values = CommandLine::Values;

TEST(ValuesTest, NumbersAreFiniteDecimals) {
    EXPECT_EQ(Values::number("-1.5", "--at"), -1.5);
    EXPECT_EQ(Values::number("1e3", "--at"), 1000.0);
    EXPECT_EQ(Values::number(".5", "--at"), 0.5);
    for (const char* typed :
         {"", " 1", "1 ", "+1", "1,5", "0x10", "inf", "-inf", "nan", "1e999", "1s", "--1", "1.2.3"})
        EXPECT_THROW(static_cast<void>(Values::number(typed, "--at")), UsageError) << typed;
}

TEST(ValuesTest, PositionsAreCountedFromZero) {
    EXPECT_EQ(Values::position("0", "--to"), 0U);
    EXPECT_EQ(Values::position("17", "--to"), 17U);
    for (const char* typed : {"", "-1", "1.0", "1x", "99999999999999999999999"})
        EXPECT_THROW(static_cast<void>(Values::position(typed, "--to")), UsageError) << typed;
}

TEST(ValuesTest, IdentifiersAreAcceptedInEitherCase) {
    const Foundation::Uuid id = Values::uuid("6f9619ff-8b86-d011-b42d-00c04fc964ff");
    EXPECT_EQ(id, Values::uuid("6F9619FF-8B86-D011-B42D-00C04FC964FF"));
    EXPECT_EQ(id.text(), "6F9619FF-8B86-D011-B42D-00C04FC964FF");
    for (const char* typed :
         {"", "1", "6F9619FF8B86D011B42D00C04FC964FF", "{6F9619FF-8B86-D011-B42D-00C04FC964FF}",
          "6F9619FF-8B86-D011-B42D-00C04FC964FG"})
        EXPECT_THROW(static_cast<void>(Values::uuid(typed)), UsageError) << typed;
}

TEST(ValuesTest, SizesAreTwoPositiveNumbers) {
    EXPECT_EQ(Values::frameSize("1280x720"), (Frames::FrameSize{1280, 720}));
    for (const char* typed : {"", "x", "1920", "1920x", "x1080", "0x10", "-1x10", "10x0", "10X10",
                              "1920x1080x1", "99999x10", "1920 x 1080", "99999999999x1"})
        EXPECT_THROW(static_cast<void>(Values::frameSize(typed)), UsageError) << typed;
}

TEST(ValuesTest, TextMustBeUtf8) {
    EXPECT_EQ(Values::text("Tokyo 東京", "TEXT"), "Tokyo 東京");
    EXPECT_THROW(static_cast<void>(Values::text("\xC3(", "TEXT")), UsageError);
}

TEST(ValuesTest, ResolutionAndCodecAreTheirStoredNames) {
    EXPECT_EQ(Values::resolution("p2160"), Export::ExportResolution::p2160);
    EXPECT_EQ(Values::codec("hevc"), Export::ExportCodec::hevc);
    EXPECT_THROW(static_cast<void>(Values::resolution("4K")), UsageError);
    EXPECT_THROW(static_cast<void>(Values::codec("H.264")), UsageError);
}
