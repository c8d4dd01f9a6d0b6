// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifContainer.h>
#include <PhotoSources/HeifDecoder.h>
#include <PhotoSources/HeifMaking.h>
#include <PhotoSources/HevcSequence.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

using HeifMaking::Bytes;
using HeifMaking::Layout;
namespace Container = PhotoSources::HeifContainer;

Bytes gridFile() {
    Layout layout;
    layout.isGrid = true;
    layout.columns = layout.rows = 2;
    layout.clutter = true;
    layout.properties = {HeifMaking::rotation(1), HeifMaking::crop(80, 80, 0, 0),
                         HeifMaking::nclx(12, 13, 6, true)};
    static const HeifMaking::Coded tile = HeifMaking::encoded(64, 64, {});
    return HeifMaking::file({tile}, layout);
}

/// Whether all that is said of the picture can be true of such a file.
void expectSane(const PhotoSources::HeifPicture& picture, const Bytes& file) {
    EXPECT_EQ(picture.tiles.size(), static_cast<std::size_t>(picture.columns * picture.rows));
    EXPECT_GT(picture.width, 0);
    EXPECT_GT(picture.height, 0);
    const auto isInside = [&](std::span<const std::uint8_t> part) {
        return part.empty() ||
               (part.data() >= file.data() && part.data() + part.size() <= file.data() + file.size());
    };
    EXPECT_TRUE(isInside(picture.iccProfile));
    for (const PhotoSources::HeifTile& tile : picture.tiles) {
        ASSERT_TRUE(tile.parameters);
        for (const auto& part : tile.data)
            EXPECT_TRUE(isInside(part));
        for (const auto& unit : tile.parameters->units)
            EXPECT_TRUE(isInside(unit));
    }
}

TEST(HeifContainerTest, ReadsWhatTheFileSays) {
    const Bytes file = gridFile();
    const auto picture = Container::readHevcPicture(file);
    ASSERT_TRUE(picture);
    expectSane(*picture, file);
    EXPECT_EQ(picture->columns, 2);
    EXPECT_EQ(picture->width, 128);
    EXPECT_EQ(picture->transforms.size(), 2U);
    EXPECT_EQ(picture->coding, (PhotoSources::ColourCoding{12, 13, 6, true}));
    EXPECT_FALSE(picture->hasAlpha);
    EXPECT_EQ(Container::readUntaggedCoding(file), picture->coding);
}

TEST(HeifContainerTest, WhatIsNoSuchFileYieldsNothing) {
    EXPECT_FALSE(Container::readHevcPicture({}));
    EXPECT_FALSE(Container::readHevcPicture(Bytes(7, 0)));
    EXPECT_FALSE(Container::readHevcPicture(Bytes(4000, 0)));
    EXPECT_FALSE(Container::readHevcPicture(Bytes(4000, 0xff)));
    EXPECT_FALSE(Container::readHevcPicture(HeifMaking::box("meta", {})));
    EXPECT_FALSE(Container::readHevcPicture(HeifMaking::fullBox("meta", 0, 0, {})));
}

TEST(HeifContainerTest, EveryTruncationIsReadSafely) {
    const Bytes whole = gridFile();
    for (std::size_t size = 0; size < whole.size(); size += 1 + size / 200) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        if (const auto picture = Container::readHevcPicture(cut))
            expectSane(*picture, cut);
    }
}

TEST(HeifContainerTest, MutatedFilesAreReadSafely) {
    const Bytes whole = gridFile();
    const std::string text(whole.begin(), whole.end());
    const std::size_t boxes = text.find("mdat");
    ASSERT_NE(boxes, std::string::npos);
    std::mt19937 random(4711);
    int read = 0;
    for (int round = 0; round < 4000; ++round) {
        Bytes bytes = whole;
        for (int i = 0, changes = 1 + static_cast<int>(random() % 6); i < changes; ++i) {
            const std::size_t at = random() % boxes;
            switch (random() % 4) {
            case 0:
                bytes[at] = 0xff;
                break;
            case 1:
                bytes[at] = static_cast<std::uint8_t>(bytes[at] + 1);
                break;
            case 2:
                bytes[at] = static_cast<std::uint8_t>(random());
                break;
            default:
                bytes[at] ^= static_cast<std::uint8_t>(1U << random() % 8);
                break;
            }
        }
        const auto picture = Container::readHevcPicture(bytes);
        static_cast<void>(Container::readUntaggedCoding(bytes));
        if (picture) {
            ++read;
            expectSane(*picture, bytes);
            if (round % 20 == 0)
                static_cast<void>(PhotoSources::HeifDecoder::decode(*picture, 32));
        }
    }
    EXPECT_GT(read, 100);
    EXPECT_LT(read, 4000);
}

TEST(HeifContainerTest, MutatedPictureDataYieldsAWholePictureOrNone) {
    const Bytes whole = gridFile();
    const std::string text(whole.begin(), whole.end());
    const std::size_t data = text.find("mdat") + 4;
    std::mt19937 random(99);
    for (int round = 0; round < 300; ++round) {
        Bytes bytes = whole;
        for (int i = 0; i < 4; ++i)
            bytes[data + random() % (bytes.size() - data)] = static_cast<std::uint8_t>(random());
        const auto picture = Container::readHevcPicture(bytes);
        ASSERT_TRUE(picture);
        if (const auto image = PhotoSources::HeifDecoder::decode(*picture, 32)) {
            EXPECT_LE(std::max(image->width, image->height), 32);
            EXPECT_EQ(image->pixels.size(),
                      static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height) * 3);
        }
    }
}

TEST(HeifContainerTest, CountsThatTakeNoBytesDoNotMultiply) {
    // 65535 items with 65535 extents each, whose offsets and lengths are announced to have no width.
    Bytes locations{0x00, 0x00, 0xff, 0xff};
    const Bytes item{0, 1, 0, 0, 0xff, 0xff};
    for (int i = 0; i < 0xffff; ++i)
        locations.insert(locations.end(), item.begin(), item.end());
    Bytes info = HeifMaking::fullBox("infe", 2, 0, {0, 1, 0, 0, 'h', 'v', 'c', '1', 0});
    Bytes infos{0, 1};
    infos.insert(infos.end(), info.begin(), info.end());
    Bytes payload;
    for (const Bytes& part :
         {HeifMaking::fullBox("pitm", 0, 0, {0, 1}), HeifMaking::fullBox("iinf", 0, 0, infos),
          HeifMaking::fullBox("iloc", 0, 0, locations)})
        payload.insert(payload.end(), part.begin(), part.end());
    EXPECT_FALSE(Container::readHevcPicture(HeifMaking::fullBox("meta", 0, 0, payload)));
}

TEST(HevcSequenceTest, ReadsTheSizeThatTheEncoderWrote) {
    for (const auto& [width, height] : {std::pair{64, 64}, {128, 96}, {512, 512}}) {
        const HeifMaking::Coded coded = HeifMaking::encoded(width, height, {});
        ASSERT_EQ(coded.parameterSets.size(), 3U);
        const auto sequence = PhotoSources::HevcSequence::read(coded.parameterSets[1]);
        ASSERT_TRUE(sequence);
        EXPECT_EQ(sequence->width, static_cast<std::uint32_t>(width));
        EXPECT_EQ(sequence->height, static_cast<std::uint32_t>(height));
    }
}

TEST(HevcSequenceTest, RandomBytesAreReadSafely) {
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round) {
        Bytes bytes(random() % 60);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random() % 4 == 0 ? 0 : random());
        static_cast<void>(PhotoSources::HevcSequence::read(bytes));
    }
}

} // namespace
