// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Uuid.h>

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <unordered_set>

namespace Foundation {
namespace {

Uuid randomUuid(std::mt19937& engine) {
    Uuid id;
    for (std::uint8_t& byte : id.bytes)
        byte = static_cast<std::uint8_t>(engine());
    return id;
}

TEST(UuidTest, IsWrittenInUpperCaseInItsCanonicalOrder) {
    const Uuid id{
        {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};
    EXPECT_EQ(id.text(), "00112233-4455-6677-8899-AABBCCDDEEFF");
    EXPECT_EQ(Uuid{}.text(), "00000000-0000-0000-0000-000000000000");
}

TEST(UuidTest, IsReadInEitherCase) {
    const Uuid id = Uuid::parse("00112233-4455-6677-8899-AABBCCDDEEFF").value();
    EXPECT_EQ(id.bytes[3], 0x33);
    EXPECT_EQ(id.bytes[15], 0xFF);
    EXPECT_EQ(Uuid::parse("00112233-4455-6677-8899-aabbccddeeff"), id);
    EXPECT_EQ(Uuid::parse("00112233-4455-6677-8899-aAbBcCdDeEfF"), id);
}

TEST(UuidTest, ReadsBackWhatItWrites) {
    std::mt19937 engine{1};
    for (int i = 0; i < 1000; ++i) {
        const Uuid id = randomUuid(engine);
        EXPECT_EQ(Uuid::parse(id.text()), id);
    }
}

TEST(UuidTest, IsNotReadFromAnyOtherText) {
    for (const char* text : {"", "00112233445566778899AABBCCDDEEFF", "{00112233-4455-6677-8899-AABBCCDDEEFF}",
                             "00112233-4455-6677-8899-AABBCCDDEEF", "00112233-4455-6677-8899-AABBCCDDEEFF0",
                             "00112233-4455-6677-8899-AABBCCDDEEFG", "00112233_4455-6677-8899-AABBCCDDEEFF",
                             "0011223-34455-6677-8899-AABBCCDDEEFF", " 0112233-4455-6677-8899-AABBCCDDEEFF",
                             "0x112233-4455-6677-8899-AABBCCDDEEFF", "00112233-4455-6677-8899-AABBCCDDEE-F"})
        EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;
}

TEST(UuidTest, IsOrderedAsItsText) {
    std::mt19937 engine{2};
    for (int i = 0; i < 1000; ++i) {
        const Uuid a = randomUuid(engine);
        Uuid b = randomUuid(engine);
        // Often equal up to the end.
        for (std::size_t j = 0; j < engine() % 16; ++j)
            b.bytes[j] = a.bytes[j];
        EXPECT_EQ(a < b, a.text() < b.text());
        EXPECT_EQ(a == b, a.text() == b.text());
    }
}

TEST(UuidTest, IsMadeAtRandomInVersion4) {
    std::set<Uuid> seen;
    std::array<std::uint8_t, 16> everSet{};
    std::array<std::uint8_t, 16> alwaysSet{};
    alwaysSet.fill(0xFF);
    for (int i = 0; i < 1000; ++i) {
        const Uuid id = Uuid::random();
        EXPECT_EQ(id.text()[14], '4');
        EXPECT_NE(std::string{"89AB"}.find(id.text()[19]), std::string::npos);
        EXPECT_TRUE(seen.insert(id).second);
        for (std::size_t j = 0; j < 16; ++j) {
            everSet[j] |= id.bytes[j];
            alwaysSet[j] &= id.bytes[j];
        }
    }
    for (std::size_t j = 0; j < 16; ++j) {
        EXPECT_EQ(everSet[j], j == 6 ? 0x4F : j == 8 ? 0xBF : 0xFF) << j;
        EXPECT_EQ(alwaysSet[j], j == 6 ? 0x40 : j == 8 ? 0x80 : 0) << j;
    }
}

TEST(UuidTest, HashesSpreadOverTheIdentifiers) {
    std::mt19937 engine{3};
    std::unordered_set<std::size_t> hashes;
    for (int i = 0; i < 10'000; ++i)
        hashes.insert(std::hash<Uuid>{}(randomUuid(engine)));
    EXPECT_GT(hashes.size(), 9'990U);
}

} // namespace
} // namespace Foundation
