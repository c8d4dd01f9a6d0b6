// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideShade.h>
#include <Roamly/Slides/SlideTextRenderer.h>

#include <gtest/gtest.h>

#include <QFont>
#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using Frames::FrameSize;
using Frames::OverlayBitmap;
using Timeline::OverlaySpec;
namespace SlideShade = Slides::SlideShade;
namespace SlideTextRenderer = Slides::SlideTextRenderer;

constexpr FrameSize p1080{1920, 1080};
constexpr FrameSize p2160{3840, 2160};

struct Bounds {
    int left = 1 << 20;
    int top = 1 << 20;
    int right = -1;
    int bottom = -1;

    void add(int x, int y) {
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x);
        bottom = std::max(bottom, y);
    }
    [[nodiscard]] bool isEmpty() const { return right < 0; }
    [[nodiscard]] int width() const { return right - left + 1; }
    [[nodiscard]] int height() const { return bottom - top + 1; }

    friend bool operator==(const Bounds&, const Bounds&) = default;
};

const std::uint8_t* pixelAt(const OverlayBitmap& bitmap, int x, int y) {
    return bitmap.pixels.data() + 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.width) +
                                       static_cast<std::size_t>(x));
}

/// Calls `visit(x, y, pixel)` with frame coordinates.
template <class Visit>
void forEachPixel(const std::vector<OverlayBitmap>& bitmaps, Visit visit) {
    for (const OverlayBitmap& bitmap : bitmaps)
        for (int y = 0; y < bitmap.height; ++y)
            for (int x = 0; x < bitmap.width; ++x)
                visit(bitmap.x + x, bitmap.y + y, pixelAt(bitmap, x, y));
}

bool isInk(const std::uint8_t* pixel) {
    return std::max({pixel[0], pixel[1], pixel[2]}) > 0;
}

/// Where letters and symbols are: shades and shadows are black and do not count.
Bounds inkBounds(const std::vector<OverlayBitmap>& bitmaps) {
    Bounds bounds;
    forEachPixel(bitmaps, [&](int x, int y, const std::uint8_t* pixel) {
        if (isInk(pixel))
            bounds.add(x, y);
    });
    return bounds;
}

std::vector<OverlayBitmap> caption(const std::string& text, FrameSize frame = p1080) {
    return SlideTextRenderer::overlay({.locationText = {}, .caption = text, .chapterTitle = {}}, frame);
}

std::vector<OverlayBitmap> location(const std::string& text, bool isApproximate = false,
                                    FrameSize frame = p1080) {
    return SlideTextRenderer::overlay(
        {.locationText = text, .isApproximate = isApproximate, .caption = {}, .chapterTitle = {}}, frame);
}

std::vector<OverlayBitmap> title(const std::string& text, FrameSize frame = p1080) {
    return SlideTextRenderer::overlay({.locationText = {}, .caption = {}, .chapterTitle = text}, frame);
}

bool same(const OverlayBitmap& a, const OverlayBitmap& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height && a.pixels == b.pixels;
}

bool same(const std::vector<OverlayBitmap>& a, const std::vector<OverlayBitmap>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const OverlayBitmap& x, const OverlayBitmap& y) { return same(x, y); });
}

const OverlaySpec fullSpec{.locationText = "Lisbon, Portugal",
                           .isApproximate = true,
                           .caption = "Sunset over the Tagus 🌅 日没",
                           .chapterTitle = "Lisbon, Portugal"};

TEST(SlideTextRendererTest, AnOverlayWithEmptyCaptionAndAbsentLocationDrawsOnlyTheBottomShade) {
    for (const OverlaySpec& spec :
         {OverlaySpec{}, OverlaySpec{.locationText = {}, .caption = "", .chapterTitle = {}},
          OverlaySpec{.locationText = "", .caption = "", .chapterTitle = {}},
          OverlaySpec{.locationText = "", .isApproximate = true, .caption = {}, .chapterTitle = {}},
          OverlaySpec{.locationText = {}, .isApproximate = true, .caption = {}, .chapterTitle = {}}}) {
        const auto bitmaps = SlideTextRenderer::overlay(spec, p1080);
        ASSERT_EQ(bitmaps.size(), 1U);
        EXPECT_TRUE(same(bitmaps[0], SlideShade::bottom(p1080)));
    }
}

TEST(SlideTextRendererTest, TheTopShadeComesWithAChapterTitleAlone) {
    EXPECT_TRUE(same(caption("Hello")[0], SlideShade::bottom(p1080)));
    EXPECT_FALSE(same(caption("Hello")[1], SlideShade::top(p1080)));
    EXPECT_TRUE(same(title("Rome")[0], SlideShade::bottom(p1080)));
    EXPECT_TRUE(same(title("Rome")[1], SlideShade::top(p1080)));
}

TEST(SlideTextRendererTest, TheCaptionStandsInTheBottomLeftCornerAtTwentyPixels) {
    // Inter's capitals are 0.727 of the text size high, a flat letter's bounds say how large it was set.
    const Bounds ink = inkBounds(caption("HHH"));
    EXPECT_GE(ink.left, 40);
    EXPECT_LE(ink.left, 43);
    EXPECT_GE(ink.height(), 14);
    EXPECT_LE(ink.height(), 16);
    // The line's descent, about a quarter of the size, is below the baseline and above the margin.
    EXPECT_GE(1080 - 40 - ink.bottom, 3);
    EXPECT_LE(1080 - 40 - ink.bottom, 8);
}

TEST(SlideTextRendererTest, TheLocationIsSetSmallerBelowTheCaption) {
    const Bounds place = inkBounds(location("HHH"));
    EXPECT_GE(place.height(), 12);
    EXPECT_LE(place.height(), 14);
    EXPECT_GE(place.left, 40);
    EXPECT_LE(place.left, 43);
    const Bounds both = inkBounds(
        SlideTextRenderer::overlay({.locationText = "HHH", .caption = "HHH", .chapterTitle = {}}, p1080));
    EXPECT_EQ(both.bottom, place.bottom) << "the location keeps its place at the bottom";
    EXPECT_LT(both.top, place.top - 20);
}

TEST(SlideTextRendererTest, TheCaptionIsWhiteAndTheLocationAtNineTenths) {
    const auto brightest = [](const std::vector<OverlayBitmap>& bitmaps) {
        int result = 0;
        forEachPixel(bitmaps,
                     [&](int, int, const std::uint8_t* pixel) { result = std::max(result, int(pixel[0])); });
        return result;
    };
    EXPECT_EQ(brightest(caption("HIL")), 255);
    EXPECT_NEAR(brightest(location("HIL")), 0.9 * 255, 1);
}

TEST(SlideTextRendererTest, TheSymbolIsThereOnlyWhenThePlaceIsApproximate) {
    const auto exact = location("Lisbon");
    const auto approximate = location("Lisbon", true);
    EXPECT_EQ(exact.size(), 2U);
    EXPECT_EQ(approximate.size(), 3U);
    const Bounds before = inkBounds({exact[1]});
    const Bounds text = inkBounds({approximate[1]});
    const Bounds symbol = inkBounds({approximate[2]});
    EXPECT_EQ(text.width(), before.width());
    EXPECT_EQ(text.top, before.top);
    EXPECT_GE(symbol.left, 40);
    EXPECT_GT(text.left, symbol.right + 3) << "4 pixels stand between the two";
    EXPECT_LT(text.left, symbol.right + 10);
    EXPECT_GE(symbol.width(), 14);
    EXPECT_LE(symbol.width(), 20);
    EXPECT_NEAR((symbol.top + symbol.bottom) / 2.0, (text.top + text.bottom) / 2.0, 4)
        << "centred on the line";
}

TEST(SlideTextRendererTest, TheSymbolNeedsAText) {
    EXPECT_TRUE(inkBounds(location("", true)).isEmpty());
    EXPECT_TRUE(inkBounds(location("\n ", true)).isEmpty());
}

TEST(SlideTextRendererTest, TheTitleStandsAtTheTopCentreAtFortyFourPixels) {
    const Bounds ink = inkBounds(title("HHHH"));
    EXPECT_NEAR((ink.left + ink.right + 1) / 2.0, 960, 1.5);
    EXPECT_GE(ink.top, 56);
    EXPECT_LE(ink.top, 56 + 14);
    EXPECT_GE(ink.height(), 31);
    EXPECT_LE(ink.height(), 34);
}

TEST(SlideTextRendererTest, TheTitleCastsASoftShadowDownwards) {
    const OverlayBitmap drawn = title("HHHH").back();
    const Bounds ink = inkBounds({drawn});
    int strongest = 0;
    int above = 0;
    int below = 0;
    Bounds shadow;
    forEachPixel({drawn}, [&](int x, int y, const std::uint8_t* pixel) {
        if (isInk(pixel) || pixel[3] == 0)
            return;
        shadow.add(x, y);
        strongest = std::max(strongest, int(pixel[3]));
        above += y < ink.top ? pixel[3] : 0;
        below += y > ink.bottom ? pixel[3] : 0;
    });
    EXPECT_LE(strongest, std::lround(0.33 * 255) + 1);
    EXPECT_GT(strongest, 20);
    EXPECT_GT(below, above + above / 2) << "it falls 2 pixels down";
    EXPECT_GT(shadow.width(), ink.width() + 8);
    EXPECT_LE(shadow.width(), ink.width() + 24);
    EXPECT_GE(shadow.bottom, ink.bottom + 6);
}

TEST(SlideTextRendererTest, NothingButTheTitleCastsAShadow) {
    for (const auto& bitmaps : {caption("HHHH"), location("HHHH", true)})
        for (std::size_t i = 1; i < bitmaps.size(); ++i)
            forEachPixel({bitmaps[i]}, [](int, int, const std::uint8_t* pixel) {
                ASSERT_EQ(pixel[0], pixel[3]) << "white and nothing else";
            });
}

TEST(SlideTextRendererTest, TextsAreTheSameInPixelsWhateverTheFrameSize) {
    const auto small = SlideTextRenderer::overlay(fullSpec, p1080);
    const auto large = SlideTextRenderer::overlay(fullSpec, p2160);
    ASSERT_EQ(small.size(), large.size());
    for (std::size_t i = 2; i < small.size(); ++i) {
        EXPECT_EQ(small[i].width, large[i].width);
        EXPECT_EQ(small[i].height, large[i].height);
        EXPECT_EQ(small[i].pixels, large[i].pixels);
    }
    EXPECT_EQ(small.back().x, large.back().x);
    EXPECT_EQ(small.back().y + 1080, large.back().y);
}

TEST(SlideTextRendererTest, TheUsersFontSettingsDoNotMatter) {
    const auto before = SlideTextRenderer::overlay(fullSpec, p1080);
    const QFont userFont = QGuiApplication::font();
    QFont odd(QStringLiteral("DejaVu Serif"), 31, QFont::Black, true);
    odd.setUnderline(true);
    odd.setLetterSpacing(QFont::AbsoluteSpacing, 9);
    QGuiApplication::setFont(odd);
    const auto after = SlideTextRenderer::overlay(fullSpec, p1080);
    QGuiApplication::setFont(userFont);
    EXPECT_TRUE(same(before, after));
}

TEST(SlideTextRendererTest, DrawingIsDeterministicInEveryThread) {
    const auto expected = SlideTextRenderer::overlay(fullSpec, p1080);
    const auto expectedCard = SlideTextRenderer::chapterCard("京都 – Kyōto 🍁", p1080);
    std::array<bool, 4> agrees{};
    {
        std::vector<std::jthread> threads;
        for (bool& each : agrees)
            threads.emplace_back([&] {
                each = true;
                for (int i = 0; i < 3; ++i)
                    each = each && same(SlideTextRenderer::overlay(fullSpec, p1080), expected) &&
                           same(SlideTextRenderer::chapterCard("京都 – Kyōto 🍁", p1080), expectedCard);
            });
    }
    for (const bool each : agrees)
        EXPECT_TRUE(each);
}

TEST(SlideTextRendererTest, BitmapsAreTightAndPremultiplied) {
    const auto bitmaps = SlideTextRenderer::overlay(fullSpec, p1080);
    for (std::size_t i = 2; i < bitmaps.size(); ++i) {
        Bounds used;
        forEachPixel({bitmaps[i]}, [&](int x, int y, const std::uint8_t* pixel) {
            ASSERT_LE(std::max({pixel[0], pixel[1], pixel[2]}), pixel[3]);
            if (pixel[3] != 0)
                used.add(x - bitmaps[i].x, y - bitmaps[i].y);
        });
        // A dithered shadow fades out, so that its outermost rows may stay clear.
        EXPECT_LE(used.left + used.top, 4);
        EXPECT_GE(used.right, bitmaps[i].width - 4);
        EXPECT_GE(used.bottom, bitmaps[i].height - 4);
    }
}

TEST(SlideTextRendererTest, ACardsTitleIsWhiteAndCentredAtFortyEightPixels) {
    const auto card = SlideTextRenderer::chapterCard("HHHH", p1080);
    ASSERT_EQ(card.size(), 1U);
    const Bounds ink = inkBounds(card);
    EXPECT_NEAR((ink.left + ink.right + 1) / 2.0, 960, 1.5);
    EXPECT_NEAR((ink.top + ink.bottom + 1) / 2.0, 540, 4) << "the line is centred, with room for descents";
    EXPECT_GE(ink.height(), 34);
    EXPECT_LE(ink.height(), 37);
    forEachPixel(card, [](int, int, const std::uint8_t* pixel) { ASSERT_EQ(pixel[0], pixel[3]); });
}

TEST(SlideTextRendererTest, ALongCardTitleIsWrappedAndCentredInsideTheMargins) {
    std::string text;
    for (int i = 0; i < 12; ++i)
        text += "Santiago de Compostela ";
    const Bounds ink = inkBounds(SlideTextRenderer::chapterCard(text, p1080));
    EXPECT_GE(ink.left, 40);
    EXPECT_LT(ink.right, 1920 - 40);
    EXPECT_GT(ink.height(), 100);
    EXPECT_NEAR((ink.left + ink.right + 1) / 2.0, 960, 3);
    EXPECT_NEAR((ink.top + ink.bottom + 1) / 2.0, 540, 12);
}

TEST(SlideTextRendererTest, AnEmptyCardIsBlack) {
    EXPECT_TRUE(SlideTextRenderer::chapterCard("", p1080).empty());
    EXPECT_TRUE(SlideTextRenderer::chapterCard("  ", p1080).empty());
}

TEST(SlideTextRendererTest, ALongTitleAndALongCaptionDoNotMeet) {
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "wandering ";
    const auto bitmaps =
        SlideTextRenderer::overlay({.locationText = text, .caption = text, .chapterTitle = text}, p1080);
    ASSERT_EQ(bitmaps.size(), 5U);
    EXPECT_LT(inkBounds({bitmaps[2]}).bottom, 540) << "the title stays on its shade";
    for (const std::size_t i : {3U, 4U})
        EXPECT_GE(inkBounds({bitmaps[i]}).top, 540);
    EXPECT_GT(inkBounds({bitmaps[3]}).top, inkBounds({bitmaps[4]}).bottom) << "location below caption";
}

TEST(SlideTextRendererTest, RightToLeftCaptionsStartAtTheLeftMarginToo) {
    for (const char* text : {"غروب الشمس في ساحة جامع الفنا", "שקיעה בים התיכון"}) {
        const Bounds ink = inkBounds(caption(text));
        EXPECT_GE(ink.left, 40) << text;
        EXPECT_LE(ink.left, 46) << text;
    }
}

TEST(SlideTextRendererTest, EveryLineOfAWrappedRightToLeftCaptionStartsAtTheLeftMargin) {
    std::string text;
    for (int i = 0; i < 40; ++i)
        text += "שקיעה בים התיכון ";
    const auto bitmaps = caption(text);
    ASSERT_EQ(bitmaps.size(), 2U);
    const OverlayBitmap& drawn = bitmaps[1];
    ASSERT_GT(drawn.height, 60);
    // Every band as high as a line has ink near the left edge.
    for (int top = 0; top + 24 <= drawn.height; top += 24) {
        int left = drawn.width;
        for (int y = top; y < top + 24; ++y)
            for (int x = 0; x < drawn.width; ++x)
                if (pixelAt(drawn, x, y)[3] > 0)
                    left = std::min(left, x);
        EXPECT_LE(drawn.x + left, 46) << "line at " << top;
    }
}

TEST(SlideTextRendererTest, EmojiAreInColour) {
    int colourful = 0;
    forEachPixel(caption("🌅🍷"), [&](int, int, const std::uint8_t* pixel) {
        colourful += std::abs(pixel[0] - pixel[2]) > 60 ? 1 : 0;
    });
    EXPECT_GT(colourful, 100);
}

TEST(SlideTextRendererTest, TextsAreLegibleOverAWhitePhoto) {
    // Relative luminance and contrast ratio as WCAG 2 defines them.
    const auto luminance = [](double value) {
        const double v = value / 255;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    const auto contrastAt = [&](double shade) {
        return (luminance(255) + 0.05) / (luminance(255 * (1 - shade)) + 0.05);
    };
    const Bounds line = inkBounds(caption("Hello"));
    EXPECT_GT(contrastAt(0.5 * (line.top - 540) / 540.0), 3.0);
    // The title is large and has its shadow besides.
    const Bounds head = inkBounds(title("Hello"));
    EXPECT_GT(contrastAt(0.55 * (540 - head.bottom) / 540.0), 3.0);
}

/// Random texts of a few pieces, so that scripts, emoji, controls and line breaks meet.
std::string randomText(std::mt19937& random) {
    static const std::vector<std::string> pieces{
        "Lisbon",  " ",       " ",       "\n",     "Ávila",
        "ffi",     "jjj",     "京都市",  "日没。", "서울",
        "مراكش",   "بيت لحم", "שלום",    "जयपुर",   "क्षत्रिय",
        "เชียงใหม่", "កម្ពុជា",   "བོད་ལྗོངས་", "😍",      "👨‍👩‍👧‍👦",
        "🇵🇹",      "1️⃣", "﷽",       "Z̸̡͉̜̝͙̿̿̈́̕a̷̢̛̜̫͇͊l̶̨̛̛̰̪̆g̵̡̘̦̦̅̈́̕ó̵",  "\t",
        "\u202E",  "\u2066",  "\u00AD",  "\u200B", "\xFF\xFE",
        "____",    "|||",     "ǺŖ",      "ﻼ",      "Wwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwww",
        ", Spain", "…",       "—"};
    std::uniform_int_distribution<std::size_t> pick(0, pieces.size() - 1);
    std::geometric_distribution<int> length(random() % 8 == 0 ? 0.004 : 0.12);
    std::string text;
    for (int i = length(random); i >= 0; --i)
        text += pieces[pick(random)];
    return text;
}

TEST(SlideTextRendererTest, NoInkEverLeavesTheMargins) {
    std::mt19937 random(20260718);
    const std::vector<FrameSize> sizes{{1920, 1080}, {1280, 720}, {640, 360}, {400, 800},
                                       {320, 180},   {200, 130},  {160, 90},  {110, 200},
                                       {100, 100},   {81, 200},   {64, 36},   {1, 1}};
    for (int round = 0; round < 240; ++round) {
        const FrameSize size = sizes[static_cast<std::size_t>(round) % sizes.size()];
        OverlaySpec spec{.locationText = randomText(random),
                         .isApproximate = random() % 2 == 0,
                         .caption = randomText(random),
                         .chapterTitle = {}};
        if (random() % 2 == 0)
            spec.chapterTitle = randomText(random);
        const auto overlay = SlideTextRenderer::overlay(spec, size);
        const auto card = SlideTextRenderer::chapterCard(spec.caption.value_or(""), size);
        for (const Bounds& ink : {inkBounds(overlay), inkBounds(card)}) {
            if (ink.isEmpty())
                continue;
            ASSERT_GE(ink.left, 40) << round;
            ASSERT_GE(ink.top, 40) << round;
            ASSERT_LT(ink.right, size.width - 40) << round;
            ASSERT_LT(ink.bottom, size.height - 40) << round;
        }
        for (const OverlayBitmap& bitmap : overlay) {
            ASSERT_GE(bitmap.x, 0) << round;
            ASSERT_GE(bitmap.y, 0) << round;
            ASSERT_LE(bitmap.x + bitmap.width, size.width) << round;
            ASSERT_LE(bitmap.y + bitmap.height, size.height) << round;
            ASSERT_EQ(bitmap.pixels.size(), static_cast<std::size_t>(bitmap.width * bitmap.height * 4));
        }
    }
}

} // namespace
