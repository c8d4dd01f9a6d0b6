// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Instant.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace Foundation {
namespace {

using std::chrono::seconds;

TEST(InstantTest, IsWrittenInUtcWithWholeSeconds) {
    EXPECT_EQ(iso8601(Instant{}), "1970-01-01T00:00:00Z");
    EXPECT_EQ(iso8601(Instant{seconds{1'689'351'725}}), "2023-07-14T16:22:05Z");
    EXPECT_EQ(iso8601(Instant{seconds{-1}}), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(*makeInstant(1, 1, 1, 0, 0, 0)), "0001-01-01T00:00:00Z");
    EXPECT_EQ(iso8601(*makeInstant(9999, 12, 31, 23, 59, 59)), "9999-12-31T23:59:59Z");
}

TEST(InstantTest, ReadsBackWhatItWritesInTheWholeRange) {
    const auto first = makeInstant(1, 1, 1, 0, 0, 0)->time_since_epoch().count();
    const auto last = makeInstant(9999, 12, 31, 23, 59, 59)->time_since_epoch().count();
    std::mt19937_64 engine{1};
    std::uniform_int_distribution<std::int64_t> anyTime{first, last};
    for (int i = 0; i < 20'000; ++i) {
        const Instant instant{seconds{anyTime(engine)}};
        ASSERT_EQ(parseIso8601(iso8601(instant)), instant);
    }
}

TEST(InstantTest, KnowsLeapYears) {
    EXPECT_TRUE(parseIso8601("2024-02-29T12:00:00Z"));
    EXPECT_TRUE(parseIso8601("2000-02-29T12:00:00Z"));
    EXPECT_FALSE(parseIso8601("1900-02-29T12:00:00Z"));
    EXPECT_FALSE(parseIso8601("2023-02-29T12:00:00Z"));
}

TEST(InstantTest, IsNotReadFromAnyOtherForm) {
    for (const char* text :
         {"", "2023-07-14", "2023-07-14T16:22:05", "2023-07-14T16:22Z", "2023-07-14T16:22:05+00:00",
          "2023-07-14T16:22:05.000Z", "2023-07-14 16:22:05Z", "2023-07-14t16:22:05Z", "2023-07-14T16:22:05z",
          "2023:07:14T16:22:05Z", "20230714T162205Z", "+023-07-14T16:22:05Z", "-023-07-14T16:22:05Z",
          " 023-07-14T16:22:05Z", "2023-07-14T16:22:05Z ", "2023-7-014T16:22:05Z", "12023-07-14T16:22:05Z"})
        EXPECT_EQ(parseIso8601(text), std::nullopt) << text;
}

TEST(InstantTest, IsNotReadFromDatesAndTimesThatDoNotExist) {
    for (const char* text :
         {"0000-01-01T00:00:00Z", "2023-00-14T16:22:05Z", "2023-13-14T16:22:05Z", "2023-07-00T16:22:05Z",
          "2023-07-32T16:22:05Z", "2023-06-31T16:22:05Z", "2023-07-14T24:00:00Z", "2023-07-14T16:60:05Z",
          "2023-07-14T16:22:60Z", "9999-99-99T99:99:99Z"})
        EXPECT_EQ(parseIso8601(text), std::nullopt) << text;
}

TEST(InstantTest, IsMadeFromACalendarDateInUtc) {
    EXPECT_EQ(makeInstant(2023, 7, 14, 16, 22, 5), Instant{seconds{1'689'351'725}});
    EXPECT_EQ(makeInstant(0, 1, 1, 0, 0, 0), std::nullopt);
    EXPECT_EQ(makeInstant(10'000, 1, 1, 0, 0, 0), std::nullopt);
    EXPECT_EQ(makeInstant(-1, 1, 1, 0, 0, 0), std::nullopt);
    EXPECT_EQ(makeInstant(2023, 4'000'000'000U, 1, 0, 0, 0), std::nullopt);
    EXPECT_EQ(makeInstant(2023, 257, 1, 0, 0, 0), std::nullopt);
    EXPECT_EQ(makeInstant(2023, 1, 257, 0, 0, 0), std::nullopt);
}

} // namespace
} // namespace Foundation
