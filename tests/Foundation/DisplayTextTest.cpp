// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>

#include <gtest/gtest.h>

using Foundation::displayText;
using Foundation::quotedText;

TEST(DisplayTextTest, ANameInUtf8IsShownAsItIs) {
    EXPECT_EQ(displayText("Straße/Ōsaka.jpg"), "Straße/Ōsaka.jpg");
    EXPECT_EQ(displayText(""), "");
}

TEST(DisplayTextTest, BytesThatAreNoTextAreReplacedOneByOne) {
    EXPECT_EQ(displayText("a\xFF"
                          "b\xE9.jpg"),
              "a\uFFFDb\uFFFD.jpg");
}

TEST(DisplayTextTest, SentencesQuoteIt) {
    EXPECT_EQ(quotedText("a\xFF.jpg"), "“a\uFFFD.jpg”");
}
