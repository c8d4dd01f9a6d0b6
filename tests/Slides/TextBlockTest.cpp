// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideFont.h>
#include <Roamly/Slides/TextBlock.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Slides::TextBlock;
using Alignment = Slides::TextBlock::Alignment;
namespace SlideFont = Slides::SlideFont;

QFont font(int size = 20) {
    return SlideFont::font(SlideFont::Family::text, size, QFont::Normal);
}

TextBlock block(const std::string& text, int width = 600, int height = 400,
                Alignment alignment = Alignment::left) {
    return {text, font(), alignment, width, height};
}

std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

TEST(TextBlockTest, AShortTextIsOneLineAsWideAsItself) {
    const TextBlock text = block("Lisbon");
    EXPECT_EQ(text.lineCount(), 1);
    EXPECT_GT(text.width(), 50);
    EXPECT_LT(text.width(), 80);
    EXPECT_GE(text.height(), 24);
    EXPECT_LE(text.height(), 26);
    EXPECT_FALSE(text.isElided());
}

TEST(TextBlockTest, AnEmptyOrBlankTextIsAnEmptyBlock) {
    for (const char* text : {"", " ", "\n\n", " \t\r\n "}) {
        EXPECT_TRUE(block(text).isEmpty());
        EXPECT_EQ(block(text).height(), 0);
    }
}

TEST(TextBlockTest, WrapsAtWordBoundaries) {
    const TextBlock text = block(repeated("word ", 60));
    EXPECT_GT(text.lineCount(), 3);
    EXPECT_LE(text.width(), 600);
    EXPECT_FALSE(text.isElided());
}

TEST(TextBlockTest, AWordLongerThanTheBoxIsBrokenAnywhere) {
    const TextBlock text = block(std::string(200, 'w'));
    EXPECT_GT(text.lineCount(), 3);
    EXPECT_LE(text.width(), 600);
}

TEST(TextBlockTest, LineBreaksOfEveryKindStartANewLine) {
    EXPECT_EQ(block("one\ntwo").lineCount(), 2);
    EXPECT_EQ(block("one\r\ntwo\rthree").lineCount(), 3);
    EXPECT_EQ(block("one\u2028two\u2029three\vfour\ffive\u0085six").lineCount(), 6);
    EXPECT_EQ(block("one\n\ntwo").lineCount(), 3);
    EXPECT_EQ(block("\n\none\n\n").lineCount(), 1) << "not around the text";
}

TEST(TextBlockTest, TooManyLinesAreCutShortWithAnEllipsis) {
    const TextBlock text = block(repeated("word ", 2000));
    EXPECT_TRUE(text.isElided());
    EXPECT_LE(text.height(), 400);
    EXPECT_GT(text.height(), 400 - 26);
    EXPECT_LE(text.width(), 600);
}

TEST(TextBlockTest, ParagraphsThatDoNotFitAreCutShortToo) {
    const TextBlock text = block(repeated("x\n", 10'000));
    EXPECT_TRUE(text.isElided());
    EXPECT_LE(text.height(), 400);
    EXPECT_GT(text.width(), block("x").width()) << "the last line ends in an ellipsis";
}

TEST(TextBlockTest, TenThousandCharactersWithoutASpaceAreCutShort) {
    for (const char* character : {"w", "語", "👍🏽", "ม", "ש", "م", "क्षि"}) {
        const TextBlock text = block(repeated(character, 10'000));
        EXPECT_TRUE(text.isElided()) << character;
        EXPECT_LE(text.height(), 400) << character;
        EXPECT_LE(text.width(), 600) << character;
    }
}

TEST(TextBlockTest, ABoxTooSmallForALineHoldsNothing) {
    EXPECT_TRUE(block("Lisbon", 600, 10).isEmpty());
    EXPECT_TRUE(block("Lisbon", 10, 400).isEmpty());
    EXPECT_TRUE(block("Lisbon", -16, -44).isEmpty());
}

TEST(TextBlockTest, CentredLinesAreBalanced) {
    const std::string title = "From Santiago de Compostela to the end of the world";
    const TextBlock wide(title, font(), Alignment::left, 420, 400);
    const TextBlock balanced(title, font(), Alignment::centre, 420, 400);
    EXPECT_EQ(wide.lineCount(), 2);
    EXPECT_EQ(balanced.lineCount(), 2);
    EXPECT_LT(balanced.width(), wide.width() - 40);
}

TEST(TextBlockTest, BytesThatAreNoUtf8AndControlCharactersAreShownSomehow) {
    EXPECT_EQ(block("caf\xE9 \x01\x02 \xF0\x9F x").lineCount(), 1);
    EXPECT_EQ(block(std::string("a\0b", 3)).lineCount(), 1);
    EXPECT_EQ(block("\xEF\xBF\xBC\xE2\x80\xAE"
                    "abc")
                  .lineCount(),
              1);
}

TEST(TextBlockTest, RightToLeftTextIsJoinedLikeHandwriting) {
    // Kept apart by non-joiners, the same letters take their wider isolated forms.
    const int joined = block("\u0633\u0644\u0633\u0644\u0629").width();
    const int apart = block("\u0633\u200C\u0644\u200C\u0633\u200C\u0644\u200C\u0629").width();
    EXPECT_LT(joined, apart);
}

} // namespace
