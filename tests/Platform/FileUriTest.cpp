// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/FileUri.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Platform::fileUri;
using Platform::pathOfFileUri;

TEST(FileUriTest, EscapesWhatMayNotStand) {
    EXPECT_EQ(fileUri("/home/me/My Trip?#100%.roamly"), "file:///home/me/My%20Trip%3F%23100%25.roamly");
    EXPECT_EQ(fileUri("/ü"), "file:///%C3%BC");
}

TEST(FileUriTest, EveryPathComesBack) {
    std::string every = "/";
    for (int byte = 1; byte < 256; ++byte)
        every += static_cast<char>(byte);
    EXPECT_EQ(pathOfFileUri(fileUri(every)), every);
}

TEST(FileUriTest, ReadsTheFormsOfOthers) {
    EXPECT_EQ(pathOfFileUri("file://localhost/a%20b"), "/a b");
    EXPECT_EQ(pathOfFileUri("file:///caf%c3%a9"), "/café");
}

TEST(FileUriTest, AnythingElseIsNoFile) {
    for (const char* text : {"", "/home", "https://roamly.app/", "file://elsewhere/a", "file:///a%2",
                             "file:///a%zz", "file:///a%00b", "file://", "file:///a%+1"})
        EXPECT_EQ(pathOfFileUri(text), std::nullopt) << text;
}

} // namespace
