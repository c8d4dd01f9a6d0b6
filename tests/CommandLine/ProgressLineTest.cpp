// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/ProgressLine.h>

#include <gtest/gtest.h>

#include <algorithm>

using CommandLine::progressLine;
using std::chrono::duration;

namespace {

auto width(const std::string& text) {
    return std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; });
}

} // namespace

TEST(ProgressLineTest, ShowsTheShareAndTheTimeLeft) {
    EXPECT_EQ(progressLine("Rendering video", 0.25, duration<double>{30}, 60),
              "Rendering video  ━━━━━━───────────────────   25 %  1:30 left");
}

TEST(ProgressLineTest, TellsNoTimeBeforeAnythingIsKnown) {
    EXPECT_EQ(progressLine("Importing", 0, duration<double>{10}, 200).find("left"), std::string::npos);
    EXPECT_EQ(progressLine("Importing", 0.5, duration<double>{0.2}, 200).find("left"), std::string::npos);
    EXPECT_EQ(progressLine("Importing", 1, duration<double>{10}, 200).find("left"), std::string::npos);
}

TEST(ProgressLineTest, LongTimesAreToldInHours) {
    EXPECT_NE(progressLine("x", 0.5, duration<double>{7384}, 80).find("2:03:04 left"), std::string::npos);
}

TEST(ProgressLineTest, NeverExceedsTheTerminalsWidth) {
    for (int columns = 1; columns < 120; ++columns) {
        for (const double fraction : {-1.0, 0.0, 0.01, 0.333, 0.999, 1.0, 2.0})
            EXPECT_LE(width(progressLine("Importing Lissabon und Umgebung – Größe", fraction,
                                         duration<double>{99}, columns)),
                      columns);
    }
}
