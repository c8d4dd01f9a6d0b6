// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifContainer.h>
#include <PhotoSources/HeifDecoder.h>
#include <PhotoSources/HeifMaking.h>
#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/SampleFiles.h>
#include <PhotoSources/VipsPicture.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <vips/vips.h>

namespace {

using HeifMaking::Chroma;
using HeifMaking::Coded;
using HeifMaking::Coding;
using HeifMaking::Layout;
using Painting::Quarters;
using Painting::Rgb;
namespace Container = PhotoSources::HeifContainer;

std::optional<Foundation::Image> decode(const HeifMaking::Bytes& file, int maxPixel = 1000) {
    const std::optional<PhotoSources::HeifPicture> picture = Container::readHevcPicture(file);
    return picture ? PhotoSources::HeifDecoder::decode(*picture, maxPixel) : std::nullopt;
}

Coded tile(Rgb colour) {
    return HeifMaking::encoded(64, 64, {colour, colour, colour, colour});
}

/// The quarters' colours in the numbers of Display P3.
Quarters inDisplayP3() {
    const auto converted = [](Rgb colour) {
        const auto samples = Painting::plain(1, 1, colour).inProfile("p3").samples();
        return Rgb{samples[0], samples[1], samples[2]};
    };
    const Quarters q;
    return {converted(q.topLeft), converted(q.topRight), converted(q.bottomLeft), converted(q.bottomRight)};
}

/// Four tiles, one to a quarter.
std::vector<Coded> fourTiles() {
    const Quarters colours;
    return {tile(colours.topLeft), tile(colours.topRight), tile(colours.bottomLeft),
            tile(colours.bottomRight)};
}

TEST(HeifDecoderTest, DecodesASinglePicture) {
    const auto image = decode(HeifMaking::file({HeifMaking::encoded(128, 96, {})}));
    EXPECT_EQ(Painting::difference(image), "");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 128);
    EXPECT_EQ(image->height, 96);
}

TEST(HeifDecoderTest, DecodesAllChromaLayoutsDepthsAndRanges) {
    for (const int bits : {8, 10}) {
        for (const bool fullRange : {true, false}) {
            for (const Chroma chroma : {Chroma::c420, Chroma::c422, Chroma::c444}) {
                const Coding coding{chroma, bits, fullRange};
                const auto file = HeifMaking::file({HeifMaking::encoded(96, 64, {}, coding)});
                for (const int bound : {1000, 24})
                    EXPECT_EQ(Painting::difference(decode(file, bound)), "")
                        << bits << ' ' << fullRange << ' ' << static_cast<int>(chroma) << ' ' << bound;
            }
        }
    }
}

TEST(HeifDecoderTest, DecodesGreyPictures) {
    const Quarters greys{{30, 30, 30}, {90, 90, 90}, {160, 160, 160}, {250, 250, 250}};
    for (const int bits : {8, 10}) {
        const auto file = HeifMaking::file({HeifMaking::encoded(96, 64, greys, {Chroma::mono, bits})});
        EXPECT_EQ(Painting::difference(decode(file), greys), "") << bits;
    }
}

TEST(HeifDecoderTest, GoesByTheContainersMatrixAndRange) {
    const Coding bt709{Chroma::c444, 8, false, 0.2126, 0.0722};
    const Coded coded = HeifMaking::encoded(96, 64, {}, bt709);
    Layout layout;
    layout.properties = {HeifMaking::nclx(1, 13, 1, false)};
    EXPECT_EQ(Painting::difference(decode(HeifMaking::file({coded}, layout))), "");
    const Coding bt2020{Chroma::c420, 10, true, 0.2627, 0.0593};
    layout.properties = {HeifMaking::nclx(1, 13, 9, true)};
    EXPECT_EQ(
        Painting::difference(decode(HeifMaking::file({HeifMaking::encoded(96, 64, {}, bt2020)}, layout))),
        "");
}

TEST(HeifDecoderTest, PutsAGridTogether) {
    Layout layout;
    layout.isGrid = true;
    layout.columns = layout.rows = 2;
    const std::vector<Coded> tiles = fourTiles();
    const auto whole = decode(HeifMaking::file(tiles, layout));
    EXPECT_EQ(Painting::difference(whole), "");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->width, 128);

    // The last column and row may stand over the edge.
    layout.width = 100;
    layout.height = 90;
    const auto cut = decode(HeifMaking::file(tiles, layout));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->width, 100);
    EXPECT_EQ(cut->height, 90);
    EXPECT_TRUE(Painting::isNear(Painting::at(*cut, 0.95, 0.95), Quarters{}.bottomRight, 4));
    EXPECT_TRUE(Painting::isNear(Painting::at(*cut, 0.60, 0.10), Quarters{}.topLeft, 4));

    const auto small = decode(HeifMaking::file(tiles, layout), 20);
    ASSERT_TRUE(small);
    EXPECT_EQ(small->width, 20);
    EXPECT_EQ(small->height, 18);
    EXPECT_TRUE(Painting::isNear(Painting::at(*small, 0.95, 0.95), Quarters{}.bottomRight, 6));
}

TEST(HeifDecoderTest, ReadsEveryFormOfTheBoxes) {
    const std::vector<Coded> tiles = fourTiles();
    for (int version = 0; version <= 2; ++version) {
        for (const bool wide : {false, true}) {
            for (const bool split : {false, true}) {
                Layout layout;
                layout.isGrid = true;
                layout.columns = layout.rows = 2;
                layout.locationVersion = version;
                layout.gridInMeta = version > 0;
                layout.wideIds = wide;
                layout.split = split;
                layout.derived = wide && version > 0;
                EXPECT_EQ(Painting::difference(decode(HeifMaking::file(tiles, layout))), "")
                    << version << wide << split;
            }
        }
    }
}

TEST(HeifDecoderTest, PassesOverWhatThePictureDoesNotNeed) {
    Layout layout;
    layout.isGrid = true;
    layout.columns = layout.rows = 2;
    layout.clutter = true;
    EXPECT_EQ(Painting::difference(decode(HeifMaking::file(fourTiles(), layout))), "");
}

TEST(HeifDecoderTest, TurnsAndMirrorsInTheOrderOfTheFile) {
    const Coded coded = HeifMaking::encoded(128, 64, {});
    const Quarters q;
    struct Case {
        std::vector<HeifMaking::Bytes> properties;
        Quarters expected;
        bool isTurned;
    };
    using HeifMaking::mirror, HeifMaking::rotation;
    const std::vector<Case> cases{
        {{rotation(0)}, q, false},
        {{rotation(1)}, {q.topRight, q.bottomRight, q.topLeft, q.bottomLeft}, true},
        {{rotation(2)}, {q.bottomRight, q.bottomLeft, q.topRight, q.topLeft}, false},
        {{rotation(3)}, {q.bottomLeft, q.topLeft, q.bottomRight, q.topRight}, true},
        {{mirror(0)}, {q.bottomLeft, q.bottomRight, q.topLeft, q.topRight}, false},
        {{mirror(1)}, {q.topRight, q.topLeft, q.bottomRight, q.bottomLeft}, false},
        {{rotation(1), mirror(1)}, {q.bottomRight, q.topRight, q.bottomLeft, q.topLeft}, true},
        {{mirror(1), rotation(1)}, {q.topLeft, q.bottomLeft, q.topRight, q.bottomRight}, true},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        Layout layout;
        layout.properties = cases[i].properties;
        const auto image = decode(HeifMaking::file({coded}, layout));
        EXPECT_EQ(Painting::difference(image, cases[i].expected), "") << i;
        ASSERT_TRUE(image);
        EXPECT_EQ(image->width, cases[i].isTurned ? 64 : 128) << i;
    }
}

TEST(HeifDecoderTest, CropsInTheOrderOfTheFile) {
    const Coded coded = HeifMaking::encoded(128, 64, {});
    const Quarters q;
    Layout layout;
    // The right half.
    layout.properties = {HeifMaking::crop(64, 64, 32, 0)};
    auto image = decode(HeifMaking::file({coded}, layout));
    EXPECT_EQ(Painting::difference(image, {q.topRight, q.topRight, q.bottomRight, q.bottomRight}), "");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 64);

    // Turned first, the same words keep the lower half of what stands upright.
    layout.properties = {HeifMaking::rotation(1), HeifMaking::crop(64, 64, 0, 32)};
    image = decode(HeifMaking::file({coded}, layout));
    EXPECT_EQ(Painting::difference(image, {q.topLeft, q.bottomLeft, q.topLeft, q.bottomLeft}), "");

    // Cropped first, then turned.
    layout.properties = {HeifMaking::crop(64, 64, -32, 0), HeifMaking::rotation(3)};
    image = decode(HeifMaking::file({coded}, layout), 16);
    EXPECT_EQ(Painting::difference(image, {q.bottomLeft, q.topLeft, q.bottomLeft, q.topLeft}), "");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 16);

    // A crop that makes no sense is passed over.
    for (const auto& nonsense : {HeifMaking::crop(500, 500, 0, 0), HeifMaking::crop(0, 0, 0, 0),
                                 HeifMaking::crop(10, 10, 4000, 0), HeifMaking::crop(64, 64, 0, 0, 0)}) {
        layout.properties = {nonsense};
        image = decode(HeifMaking::file({coded}, layout));
        ASSERT_TRUE(image);
        EXPECT_EQ(image->width, 128);
        EXPECT_EQ(image->height, 64);
    }
}

TEST(HeifDecoderTest, TurnsWhatTheCodePointsSayIntoSrgb) {
    // The same colour stored with the primaries of Display P3 needs other numbers.
    const Coded coded = HeifMaking::encoded(96, 64, inDisplayP3(), {Chroma::c444, 10});
    Layout layout;
    layout.properties = {HeifMaking::nclx(12, 13, 6, true)};
    EXPECT_EQ(Painting::difference(decode(HeifMaking::file({coded}, layout)), {}, 5), "");
}

TEST(HeifDecoderTest, HighDynamicRangeKeepsItsOrderAndItsNeutrals) {
    // PQ: 0.58 is diffuse white, 0.44 about a quarter of it, 0.75 four and a half times brighter.
    const Quarters pq{{0, 0, 0}, {112, 112, 112}, {148, 148, 148}, {191, 191, 191}};
    const Coded coded = HeifMaking::encoded(96, 64, pq, {Chroma::c420, 10});
    Layout layout;
    for (const int transfer : {16, 18}) {
        layout.properties = {HeifMaking::nclx(9, transfer, 6, true)};
        const auto image = decode(HeifMaking::file({coded}, layout));
        ASSERT_TRUE(image);
        const int black = Painting::at(*image, 0.25, 0.25).g, mid = Painting::at(*image, 0.75, 0.25).g;
        const int white = Painting::at(*image, 0.25, 0.75).g, bright = Painting::at(*image, 0.75, 0.75).g;
        EXPECT_LE(black, 3) << transfer;
        EXPECT_GT(mid, 60) << transfer;
        EXPECT_GT(white, mid + 20) << transfer;
        EXPECT_GT(bright, white) << transfer;
        for (const double x : {0.25, 0.75}) {
            const Rgb seen = Painting::at(*image, x, 0.75);
            EXPECT_TRUE(Painting::isNear(seen, {seen.g, seen.g, seen.g}, 3)) << seen;
        }
    }
}

TEST(HeifDecoderTest, AnIccProfileGoesBeforeTheCodePoints) {
    const auto profile = PhotoSources::ColourProfile::forCoding({12, 13, 6, true});
    ASSERT_TRUE(profile);
    Layout layout;
    layout.properties = {HeifMaking::nclx(1, 13, 6, true), HeifMaking::icc(*profile)};
    const auto file = HeifMaking::file({HeifMaking::encoded(96, 64, inDisplayP3(), {Chroma::c444})}, layout);
    EXPECT_EQ(Painting::difference(decode(file), {}, 5), "");
}

TEST(HeifDecoderTest, AFewLostTilesAreShownBlackAndManyAreNothing) {
    std::vector<Coded> tiles = fourTiles();
    Layout layout;
    layout.isGrid = true;
    layout.columns = layout.rows = 2;
    tiles[3].data.resize(6);
    const auto image = decode(HeifMaking::file(tiles, layout));
    Quarters expected;
    expected.bottomRight = {0, 0, 0};
    EXPECT_EQ(Painting::difference(image, expected), "");
    tiles[2].data.resize(6);
    EXPECT_FALSE(decode(HeifMaking::file(tiles, layout)));
}

TEST(HeifDecoderTest, AgreesWithTheSystemsReader) {
    const TemporaryFolder folder;
    const Coded coded = HeifMaking::encoded(128, 64, {});
    using HeifMaking::mirror, HeifMaking::rotation, HeifMaking::crop;
    const std::vector<std::vector<HeifMaking::Bytes>> cases{
        {},
        {rotation(1)},
        {rotation(2)},
        {rotation(3)},
        {mirror(0)},
        {mirror(1)},
        {rotation(1), mirror(0)},
        {mirror(0), rotation(3)},
        {crop(64, 32, 10, -6)},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        Layout layout;
        layout.properties = cases[i];
        const HeifMaking::Bytes bytes = HeifMaking::file({coded}, layout);
        const auto path = folder.write("a.heic", bytes);
        const auto opened = PhotoSources::ImageFile::open(path);
        ASSERT_TRUE(opened);
        const auto theirs = PhotoSources::VipsPicture::decode(*opened, PhotoSources::ImageFormat::heif, 1000);
        const auto ours = decode(bytes);
        ASSERT_TRUE(ours) << i;
        ASSERT_TRUE(theirs) << i;
        ASSERT_EQ(ours->width, theirs->width) << i;
        ASSERT_EQ(ours->height, theirs->height) << i;
        for (const double x : {0.1, 0.4, 0.6, 0.9}) {
            for (const double y : {0.1, 0.4, 0.6, 0.9}) {
                const Rgb here = Painting::at(*ours, x, y), there = Painting::at(*theirs, x, y);
                EXPECT_TRUE(Painting::isNear(here, there, 8)) << i << ' ' << x << ' ' << y << here << there;
            }
        }
    }
}

TEST(HeifDecoderTest, DecodesWhatTheSystemWrites) {
    const TemporaryFolder folder;
    const auto path = Painting::quarters(300, 200).save(folder.path() / "a.heic[Q=90]");
    const auto image = PhotoSources::ImageDecoder::decode(path, 1000);
    EXPECT_EQ(Painting::difference(image, {}, 6), "");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 300);
    EXPECT_EQ(image->height, 200);
}

TEST(HeifDecoderTest, DecodesThroughTheFrontDoor) {
    const TemporaryFolder folder;
    Layout layout;
    layout.isGrid = true;
    layout.columns = layout.rows = 2;
    layout.clutter = true;
    layout.properties = {HeifMaking::rotation(1)};
    const auto path = folder.write("a.heic", HeifMaking::file(fourTiles(), layout));
    const Quarters q;
    EXPECT_EQ(Painting::difference(PhotoSources::ImageDecoder::decode(path, 50),
                                   {q.topRight, q.bottomRight, q.topLeft, q.bottomLeft}),
              "");
}

} // namespace
