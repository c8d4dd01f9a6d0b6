// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bytes.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace Foundation {
namespace {

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(Base64Test, EncodesTheStandardsExamples) {
    // RFC 4648, section 10.
    const std::pair<std::string_view, std::string_view> examples[] = {{"", ""},
                                                                      {"f", "Zg=="},
                                                                      {"fo", "Zm8="},
                                                                      {"foo", "Zm9v"},
                                                                      {"foob", "Zm9vYg=="},
                                                                      {"fooba", "Zm9vYmE="},
                                                                      {"foobar", "Zm9vYmFy"}};
    for (const auto& [plain, encoded] : examples) {
        EXPECT_EQ(base64Encoded(bytesOf(plain)), encoded);
        EXPECT_EQ(base64Decoded(encoded), bytesOf(plain));
    }
    EXPECT_EQ(base64Encoded({0xFB, 0xEF, 0xFF}), "++//");
}

TEST(Base64Test, DecodesWhatItEncodes) {
    std::mt19937 engine{1};
    for (std::size_t length = 0; length < 500; ++length) {
        Bytes bytes(length);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(engine());
        EXPECT_EQ(base64Decoded(base64Encoded(bytes)), bytes);
    }
}

TEST(Base64Test, RefusesTextsThatAreNoEncoding) {
    using namespace std::string_view_literals;
    for (const std::string_view text :
         {"Z"sv,    "Zg"sv,         "Zg="sv,   "Zm9"sv,     "Zg==Zg=="sv, "="sv,      "=="sv,
          "==="sv,  "===="sv,       "Z==="sv,  "Z=g="sv,    "Zm=v"sv,     "Zm9v\n"sv, "Zm9 "sv,
          "Zm-_"sv, "Zm9vYg==\n"sv, "Zm9\0"sv, "Zm\xFFv"sv, "Zm9vYg= "sv, "=Zm9"sv})
        EXPECT_EQ(base64Decoded(text), std::nullopt) << text;
}

TEST(Base64Test, IgnoresTheUnusedBitsOfTheLastCharacter) {
    EXPECT_EQ(base64Decoded("Zh=="), bytesOf("f"));
    EXPECT_EQ(base64Decoded("Zm9="), bytesOf("fo"));
}

TEST(Base64Test, SurvivesAnyText) {
    std::mt19937 engine{2};
    constexpr std::string_view letters = "AZaz09+/==\n*";
    for (int i = 0; i < 20'000; ++i) {
        std::string text(engine() % 13, ' ');
        for (char& c : text)
            c = letters[engine() % letters.size()];
        if (const std::optional<Bytes> bytes = base64Decoded(text)) {
            EXPECT_EQ(base64Encoded(*bytes).size(), text.size());
            EXPECT_EQ(base64Decoded(base64Encoded(*bytes)), bytes);
        }
    }
}

TEST(Utf8Test, AcceptsEveryCodePointOnce) {
    for (std::uint32_t codePoint = 0; codePoint <= 0x110000; ++codePoint) {
        std::string text;
        if (codePoint < 0x80) {
            text = {static_cast<char>(codePoint)};
        } else if (codePoint < 0x800) {
            text = {static_cast<char>(0xC0 | codePoint >> 6), static_cast<char>(0x80 | (codePoint & 0x3F))};
        } else if (codePoint < 0x10000) {
            text = {static_cast<char>(0xE0 | codePoint >> 12),
                    static_cast<char>(0x80 | (codePoint >> 6 & 0x3F)),
                    static_cast<char>(0x80 | (codePoint & 0x3F))};
        } else {
            text = {static_cast<char>(0xF0 | codePoint >> 18),
                    static_cast<char>(0x80 | (codePoint >> 12 & 0x3F)),
                    static_cast<char>(0x80 | (codePoint >> 6 & 0x3F)),
                    static_cast<char>(0x80 | (codePoint & 0x3F))};
        }
        const bool isCharacter = codePoint <= 0x10FFFF && (codePoint < 0xD800 || codePoint > 0xDFFF);
        ASSERT_EQ(isValidUtf8(text), isCharacter) << codePoint;
    }
}

TEST(Utf8Test, RefusesOverlongForms) {
    for (const std::string_view text :
         {"\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF", "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF"})
        EXPECT_FALSE(isValidUtf8(text));
}

TEST(Utf8Test, RefusesBrokenSequences) {
    for (const std::string_view text :
         {"\x80", "\xBF", "\xC3", "\xC3(", "\xE2\x82", "\xE2(\xA1", "\xE2\x82(", "\xF0\x9F\x98",
          "\xF0(\x8C\xBC", "\xF8\x88\x80\x80\x80", "\xFE", "\xFF", "a\xC3", "\xC3\xA9\xA9"})
        EXPECT_FALSE(isValidUtf8(text));
}

TEST(Utf8Test, AcceptsTextsOfMixedLength) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("aé日😀z"));
    EXPECT_TRUE(isValidUtf8(std::string_view{"a\0b", 3}));
}

} // namespace
} // namespace Foundation
