// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/RandomProject.h>
#include <Timeline/KenBurns.h>

#include <gtest/gtest.h>

#include <limits>
#include <string_view>

namespace Timeline {
namespace {

using Foundation::Uuid;

/// Of the two scales, the one that is not 1.
double farScale(const KenBurnsTransform& motion) {
    return motion.startScale == 1.0 ? motion.endScale : motion.startScale;
}

// The expected values were computed apart from this program, in exact 64-bit integer and IEEE double
// arithmetic (tests/Timeline/ken_burns_reference.py prints them).

void expectMotion(std::string_view identifier, const KenBurnsTransform& expected) {
    EXPECT_EQ(KenBurns::transform(Uuid::parse(identifier).value()), expected) << identifier;
}

TEST(KenBurnsTest, IsTheSameOnEveryMachine) {
    expectMotion("00000000-0000-0000-0000-000000000000",
                 {.startScale = 0x1.18e61ad110b58p+0,
                  .endScale = 0x1.0000000000000p+0,
                  .startOffset = {.width = -0x1.d188d7f3d6e6bp-6, .height = 0x1.cee554725abf5p-6},
                  .endOffset = {.width = -0x1.82fa194903df9p-6, .height = -0x1.537dc9ddc9005p-7}});
    expectMotion("00000000-0000-4000-8000-0000000000B2",
                 {.startScale = 0x1.0000000000000p+0,
                  .endScale = 0x1.1b45026fbd050p+0,
                  .startOffset = {.width = -0x1.7102aced8cf23p-6, .height = 0x1.962e788863d39p-6},
                  .endOffset = {.width = -0x1.92e8e626c6f04p-6, .height = -0x1.bb0751ddb3438p-9}});
    expectMotion("12345678-9ABC-4DEF-8123-456789ABCDEF",
                 {.startScale = 0x1.0000000000000p+0,
                  .endScale = 0x1.19a884b369fd9p+0,
                  .startOffset = {.width = 0x1.35faa86b73104p-6, .height = -0x1.bd0f2150871dcp-7},
                  .endOffset = {.width = -0x1.2d4b971f002b3p-6, .height = 0x1.f81da4a9a529ep-8}});
    expectMotion("FFFFFFFF-FFFF-FFFF-0000-000000000000",
                 {.startScale = 0x1.1dd332e56f32dp+0,
                  .endScale = 0x1.0000000000000p+0,
                  .startOffset = {.width = -0x1.13c2acedf69a4p-6, .height = -0x1.220ed5a1dc3aep-8},
                  .endOffset = {.width = 0x1.942b186e2521dp-7, .height = 0x1.3f2a493e9f922p-6}});
    expectMotion("6F9619FF-8B86-D011-B42D-00CF4FC964FF",
                 {.startScale = 0x1.1dd92c4724f8dp+0,
                  .endScale = 0x1.0000000000000p+0,
                  .startOffset = {.width = -0x1.2a79dfc85e034p-6, .height = -0x1.d241f01fe91c5p-8},
                  .endOffset = {.width = -0x1.c6a291c0f4fdep-8, .height = -0x1.057a2ab68e54ep-7}});
}

TEST(KenBurnsTest, OfOneIdentifierIsAlwaysTheSame) {
    ProjectModel::Testing::RandomProject random{51};
    for (int i = 0; i < 200; ++i) {
        const Uuid id = random.uuid();
        EXPECT_EQ(KenBurns::transform(id), KenBurns::transform(id));
    }
}

TEST(KenBurnsTest, StartsOrEndsAtTheFittedSizeAndNeverBoth) {
    ProjectModel::Testing::RandomProject random{52};
    int zoomsIn = 0;
    constexpr int count = 4000;
    for (int i = 0; i < count; ++i) {
        const KenBurnsTransform motion = KenBurns::transform(random.uuid());
        ASSERT_NE(motion.startScale == 1.0, motion.endScale == 1.0);
        ASSERT_GE(farScale(motion), 1.08);
        ASSERT_LT(farScale(motion), 1.12);
        for (const double component : {motion.startOffset.width, motion.startOffset.height,
                                       motion.endOffset.width, motion.endOffset.height}) {
            ASSERT_GE(component, -0.03);
            ASSERT_LT(component, 0.03);
        }
        zoomsIn += motion.startScale == 1.0;
    }
    EXPECT_GT(zoomsIn, count * 45 / 100);
    EXPECT_LT(zoomsIn, count * 55 / 100);
}

TEST(KenBurnsTest, OfIdentifiersWhoseHalvesCancelIsOneMotion) {
    // The seed is the exclusive or of the identifier's halves.
    Uuid a;
    Uuid b;
    for (std::size_t i = 0; i < 8; ++i) {
        a.bytes[i] = a.bytes[i + 8] = static_cast<std::uint8_t>(17 * i);
        b.bytes[i] = b.bytes[i + 8] = static_cast<std::uint8_t>(200 - i);
    }
    EXPECT_EQ(KenBurns::transform(a), KenBurns::transform(b));
    EXPECT_EQ(KenBurns::transform(a), KenBurns::transform(Uuid{}));
}

const KenBurnsTransform motion{.startScale = 1.0,
                               .endScale = 1.1,
                               .startOffset = {.width = -0.02, .height = 0.01},
                               .endOffset = {.width = 0.03, .height = -0.01}};

TEST(KenBurnsTest, SamplesTheStartBelowZeroAndTheEndAboveOne) {
    for (const double progress : {-std::numeric_limits<double>::infinity(), -1.0, -0.0, 0.0}) {
        EXPECT_EQ(motion.sample(progress).scale, motion.startScale);
        EXPECT_EQ(motion.sample(progress).offset, motion.startOffset);
    }
    for (const double progress : {1.0, 2.0, std::numeric_limits<double>::infinity()}) {
        EXPECT_DOUBLE_EQ(motion.sample(progress).scale, motion.endScale);
        EXPECT_DOUBLE_EQ(motion.sample(progress).offset.width, motion.endOffset.width);
        EXPECT_DOUBLE_EQ(motion.sample(progress).offset.height, motion.endOffset.height);
        EXPECT_EQ(motion.sample(progress), motion.sample(1.0));
    }
}

TEST(KenBurnsTest, SamplesLinearlyInBetween) {
    const KenBurnsTransform::Sample quarter = motion.sample(0.25);
    EXPECT_EQ(quarter.scale, 1.0 + 0.25 * (1.1 - 1.0));
    EXPECT_EQ(quarter.offset.width, -0.02 + 0.25 * (0.03 - -0.02));
    EXPECT_EQ(quarter.offset.height, 0.01 + 0.25 * (-0.01 - 0.01));
}

TEST(KenBurnsTest, StandsStillForWhatIsNoProgress) {
    EXPECT_EQ(motion.sample(std::numeric_limits<double>::quiet_NaN()), motion.sample(0));
}

} // namespace
} // namespace Timeline
