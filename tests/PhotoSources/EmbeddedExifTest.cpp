// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/EmbeddedExif.h>
#include <PhotoSources/Exiv2Tags.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace PhotoSources {
namespace {

using SampleFiles::Bytes;
using SampleFiles::Exif;

Exif fullExif() {
    return Exif{}
        .orientation(6)
        .dateTimeOriginal("2023:07:14 18:22:05")
        .offsetTimeOriginal("-05:30")
        .latitude({{48, 1}, {51, 1}, {2999, 100}}, "S")
        .longitude({{2, 1}, {21, 1}, {36, 1}}, "W");
}

struct Sample {
    std::string name;
    Bytes contents;
};

std::vector<Sample> samples() {
    const Bytes little = SampleFiles::tiff(fullExif());
    const Bytes big = SampleFiles::tiff(fullExif(), true);
    Bytes boxed{0, 0, 0, 0};
    SampleFiles::append(boxed, big);
    return {{"little.jpg", SampleFiles::jpeg(little)},
            {"big.jpg", SampleFiles::jpeg(big)},
            {"photo.png", SampleFiles::png(big)},
            {"photo.webp", SampleFiles::webp(little)},
            {"photo.tif", little},
            {"photo.heic", SampleFiles::heif(big)},
            {"inside.heic", SampleFiles::heif(big, {.itemLocationVersion = 2, .isInItemData = true})},
            {"photo.jxl", SampleFiles::jpegXl(SampleFiles::box("Exif", boxed))},
            {"packed.jxl", SampleFiles::jpegXl(SampleFiles::box(
                               "brob", SampleFiles::joined("Exif", SampleFiles::brotli(boxed))))}};
}

void expectSound(const ExifTags& tags) {
    if (tags.latitude) {
        EXPECT_TRUE(std::isfinite(*tags.latitude));
        EXPECT_GE(*tags.latitude, 0);
    }
    if (tags.longitude) {
        EXPECT_TRUE(std::isfinite(*tags.longitude));
        EXPECT_GE(*tags.longitude, 0);
    }
    for (const auto& text :
         {tags.dateTimeOriginal, tags.offsetTimeOriginal, tags.latitudeRef, tags.longitudeRef}) {
        if (text) {
            EXPECT_EQ(text->find('\0'), std::string::npos);
            EXPECT_LE(text->size(), 64U);
        }
    }
}

void mutate(Bytes& bytes, std::mt19937& random) {
    // Mostly the values that break readers: none, all, the sign, one too many.
    constexpr std::array<std::uint8_t, 8> favourites{0x00, 0x01, 0x02, 0x7F, 0x80, 0xFE, 0xFF, 0x0D};
    const std::size_t edits = 1 + random() % 8;
    for (std::size_t i = 0; i < edits && !bytes.empty(); ++i) {
        const std::size_t position = random() % bytes.size();
        switch (random() % 8) {
        case 0:
            bytes.resize(position);
            break;
        case 1:
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(position), random() % 16, 0x00);
            break;
        case 2:
        case 3:
            bytes[position] = static_cast<std::uint8_t>(random());
            break;
        default:
            bytes[position] = favourites[random() % favourites.size()];
        }
    }
}

TEST(EmbeddedExifTest, SurvivesMutatedFiles) {
    std::mt19937 random{14'072'023};
    for (const Sample& sample : samples()) {
        for (int round = 0; round < 4'000; ++round) {
            Bytes bytes = sample.contents;
            mutate(bytes, random);
            if (const std::optional<ExifTags> tags = readEmbeddedExif(MemorySource{bytes}))
                expectSound(*tags);
        }
    }
}

TEST(EmbeddedExifTest, SurvivesFilesCutOffAnywhere) {
    for (const Sample& sample : samples()) {
        for (std::size_t length = 0; length < sample.contents.size(); ++length) {
            const Bytes bytes(sample.contents.begin(),
                              sample.contents.begin() + static_cast<std::ptrdiff_t>(length));
            if (const std::optional<ExifTags> tags = readEmbeddedExif(MemorySource{bytes}))
                expectSound(*tags);
        }
    }
}

TEST(EmbeddedExifTest, SurvivesRandomBytesBehindEverySignature) {
    std::mt19937 random{7};
    for (const Sample& sample : samples()) {
        for (int round = 0; round < 500; ++round) {
            Bytes bytes(sample.contents.begin(), sample.contents.begin() + 12);
            const std::size_t length = random() % 2'000;
            for (std::size_t i = 0; i < length; ++i)
                bytes.push_back(static_cast<std::uint8_t>(random() % 4 != 0 ? random() % 3 : random()));
            if (const std::optional<ExifTags> tags = readEmbeddedExif(MemorySource{bytes}))
                expectSound(*tags);
        }
    }
}

TEST(EmbeddedExifTest, EndsOnDirectoriesThatPointToThemselves) {
    Exif exif;
    exif.image.push_back(SampleFiles::longField(0x8769, 8));
    exif.image.push_back(SampleFiles::longField(0x8825, 8));
    exif.image.push_back(SampleFiles::longField(0x014A, 8));
    EXPECT_EQ(readEmbeddedExif(MemorySource{SampleFiles::tiff(exif)}), ExifTags{});
}

TEST(EmbeddedExifTest, EndsOnEndlessChainsOfEmptyParts) {
    Bytes jpeg{0xFF, 0xD8};
    Bytes png = SampleFiles::bytesOf("\x89PNG\r\n\x1A\n");
    Bytes heif = SampleFiles::box("ftyp", SampleFiles::bytesOf("heicheic"));
    for (int i = 0; i < 300'000; ++i) {
        SampleFiles::append(jpeg, {0xFF, 0xE2, 0x00, 0x02});
        SampleFiles::append(png, {0, 0, 0, 0, 'a', 'B', 'C', 'd', 0, 0, 0, 0});
        SampleFiles::append(heif, SampleFiles::box("free", {}));
    }
    EXPECT_EQ(readEmbeddedExif(MemorySource{jpeg}), ExifTags{});
    EXPECT_EQ(readEmbeddedExif(MemorySource{png}), ExifTags{});
    EXPECT_EQ(readEmbeddedExif(MemorySource{heif}), ExifTags{});
}

TEST(EmbeddedExifTest, HugeCountsCostNothing) {
    Exif exif;
    exif.photo.push_back({0x9003, 2, 0xFFFFFFFF, {'2', '0', '2', '3', ':', '0'}, 1});
    exif.gps.push_back({2, 5, 0xFFFFFFFF, {1, 1, 1, 1, 1, 1}, 4});
    const std::optional<ExifTags> tags = readEmbeddedExif(MemorySource{SampleFiles::tiff(exif)});
    ASSERT_TRUE(tags);
    expectSound(*tags);
}

TEST(EmbeddedExifTest, OtherKindsOfFilesAreLeftToOthers) {
    EXPECT_EQ(readEmbeddedExif(MemorySource{Bytes{}}), std::nullopt);
    EXPECT_EQ(readEmbeddedExif(MemorySource{SampleFiles::bytesOf("a text that is long enough")}),
              std::nullopt);
}

TEST(EmbeddedExifTest, AgreesWithExiv2) {
    const TemporaryFolder folder;
    for (const Sample& sample : samples()) {
        if (sample.name.ends_with(".jxl") || sample.name == "inside.heic")
            continue; // Exiv2 does not read these in every version
        const std::optional<ExifTags> tags = readEmbeddedExif(MemorySource{sample.contents});
        ASSERT_TRUE(tags) << sample.name;
        EXPECT_TRUE(tags->dateTimeOriginal) << sample.name;
        EXPECT_EQ(*tags, readExiv2Tags(folder.write(sample.name, sample.contents))) << sample.name;
    }
}

TEST(EmbeddedExifTest, AgreesWithExiv2OnUnusualPositions) {
    const TemporaryFolder folder;
    const std::vector<std::vector<SampleFiles::Rational>> positions{{{0, 1}, {0, 1}, {0, 1}},
                                                                    {{48, 1}, {51'000, 1'000}, {0, 1}},
                                                                    {{4885, 100}},
                                                                    {{48, 1}, {51, 1}},
                                                                    {{48, 1}, {51, 1}, {0, 0}},
                                                                    {{0, 0}, {0, 0}, {0, 0}},
                                                                    {{0xFFFFFFFF, 1}, {1, 3}, {1, 7}}};
    for (const auto& position : positions) {
        const Bytes bytes = SampleFiles::jpeg(Exif{}.latitude(position, "N").longitude(position, "W"));
        EXPECT_EQ(readEmbeddedExif(MemorySource{bytes}), readExiv2Tags(folder.write("a.jpg", bytes)));
    }
}

TEST(Exiv2TagsTest, TakesNoNameForAnAddressOrStandardInput) {
    EXPECT_EQ(readExiv2Tags("-"), ExifTags{});
    EXPECT_EQ(readExiv2Tags("http://localhost:1/a.jpg"), ExifTags{});
    EXPECT_EQ(readExiv2Tags("/nowhere/at/all.jpg"), ExifTags{});
}

} // namespace
} // namespace PhotoSources
