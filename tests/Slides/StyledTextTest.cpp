// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideFont.h>
#include <Roamly/Slides/StyledText.h>

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QGlyphRun>
#include <QTextLayout>

namespace {

using Slides::StyledText;
namespace SlideFont = Slides::SlideFont;

QFont textFont() {
    return SlideFont::font(SlideFont::Family::text, 20, QFont::Normal);
}

StyledText styled(const char* text) {
    return {QString::fromUtf8(text), textFont()};
}

/// How many glyphs the text comes to, or -1 when some character has none in any font.
int glyphCount(const StyledText& styledText) {
    QTextLayout layout(styledText.text, textFont());
    layout.setFormats(styledText.formats);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    int count = 0;
    for (const QGlyphRun& run : layout.glyphRuns()) {
        if (run.glyphIndexes().contains(0))
            return -1;
        count += static_cast<int>(run.glyphIndexes().size());
    }
    return count;
}

bool hasFonts() {
    const QStringList families = QFontDatabase::families();
    return families.contains(QStringLiteral("Noto Sans CJK JP")) &&
           families.contains(QStringLiteral("Noto Color Emoji")) &&
           families.contains(QStringLiteral("Noto Sans Khmer"));
}

TEST(StyledTextTest, PlainTextNeedsNoFormats) {
    const StyledText text = styled("Café on the Rua Garrett, 18:30 – Ελλάδα, Россия");
    EXPECT_EQ(text.text, QString::fromUtf8("Café on the Rua Garrett, 18:30 – Ελλάδα, Россия"));
    EXPECT_TRUE(text.formats.isEmpty());
}

TEST(StyledTextTest, EmojiAreSetInTheColourFont) {
    const StyledText text = styled("sea 🌊🍷 day");
    ASSERT_EQ(text.formats.size(), 1);
    EXPECT_EQ(text.formats[0].start, 4);
    EXPECT_EQ(text.formats[0].length, 4);
    EXPECT_EQ(text.formats[0].format.font().families().first(), QStringLiteral("Noto Color Emoji"));
}

TEST(StyledTextTest, PresentationSelectorsDecideBetweenTextAndPicture) {
    EXPECT_TRUE(styled("\u2764").formats.isEmpty());     // ❤
    EXPECT_EQ(styled("\u2764\uFE0F").formats.size(), 1); // ❤️
    EXPECT_EQ(styled("\u2764\uFE0F").text, QStringLiteral("\u2764"));
    EXPECT_TRUE(styled("\u231A\uFE0E").formats.isEmpty()) << "a watch that asks to be text";
}

TEST(StyledTextTest, JoinedEmojiBecomeOnePicture) {
    if (!hasFonts())
        GTEST_SKIP() << "needs Noto Color Emoji";
    for (const char* sequence : {"👨‍👩‍👧‍👦", "🏳️‍🌈", "❤️‍🔥", "1️⃣",
                                 "🇵🇹", "👍🏽", "👩🏿‍🚀"})
        EXPECT_EQ(glyphCount(styled(sequence)), 1) << sequence;
}

TEST(StyledTextTest, AScriptWithShapingRulesIsSetInItsOwnFontWithTheSpacesAfterIt) {
    const StyledText text = styled("Jaipur हवा महल, then");
    ASSERT_EQ(text.formats.size(), 1);
    EXPECT_EQ(text.text.mid(text.formats[0].start, text.formats[0].length), QString::fromUtf8("हवा महल, "));
    EXPECT_EQ(text.formats[0].format.font().families().first(), QStringLiteral("Noto Sans Devanagari"));
}

TEST(StyledTextTest, EveryTravellersScriptHasItsGlyphs) {
    if (!hasFonts())
        GTEST_SKIP() << "needs the Noto fonts";
    for (const char* text : {"Lisboa, Portugal",
                             "Αθήνα",
                             "Санкт-Петербург",
                             "京都市、日本",
                             "서울",
                             "北京 臺北",
                             "مراكش",
                             "تهران",
                             "תל אביב",
                             "जयपुर, भारत",
                             "কলকাতা",
                             "சென்னை",
                             "తిరుపతి",
                             "ಬೆಂಗಳೂರು",
                             "കൊച്ചി",
                             "ਅੰਮ੍ਰਿਤਸਰ",
                             "ગુજરાત",
                             "ශ්‍රී ලංකාව",
                             "เชียงใหม่",
                             "ວຽງຈັນ",
                             "ភ្នំពេញ",
                             "ရန်ကုန်",
                             "თბილისი",
                             "Երևան",
                             "አዲስ አበባ",
                             "Hà Nội, Việt Nam",
                             "Þingvellir ½ № ™ → ★ ☀ ♥"})
        EXPECT_GT(glyphCount(styled(text)), 0) << text;
}

TEST(StyledTextTest, ElidingCutsSpacesAndKeepsFormatsInPlace) {
    const StyledText text = styled("sea 🌊 and wine 🍷");
    const StyledText part = text.elided(4, 7); // "🌊 and "
    EXPECT_EQ(part.text, QString::fromUtf8("🌊 and…"));
    ASSERT_EQ(part.formats.size(), 1);
    EXPECT_EQ(part.formats[0].start, 0);
    EXPECT_EQ(part.formats[0].length, 2);
    EXPECT_EQ(text.elided(0, 0).text, QString::fromUtf8("…"));
    EXPECT_EQ(styled("जयपुर, भारत").elided(0, 5).formats.value(0).length, 6)
        << "the ellipsis is set like the rest";
}

} // namespace
