// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Instant.h>
#include <PhotoSources/ImageFileMetadata.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>

namespace PhotoSources {
namespace {

using Foundation::iso8601;
using Foundation::parseIso8601;
using ImageFileMetadataReader::parseExifDate;
using SampleFiles::Exif;

/// Sets the machine's zone while it lives.
class TimeZone {
public:
    explicit TimeZone(const char* name) {
        if (const char* before = std::getenv("TZ"))
            m_before = before;
        ::setenv("TZ", name, 1);
        ::tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() {
        if (m_before)
            ::setenv("TZ", m_before->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }

private:
    std::optional<std::string> m_before;
};

std::string text(const std::optional<Foundation::Instant>& instant) {
    return instant ? iso8601(*instant) : "none";
}

std::string parsed(std::string_view date, std::optional<std::string> offset = std::nullopt) {
    return text(parseExifDate(date, offset));
}

std::optional<Foundation::Instant> birthTime(const std::filesystem::path& path) {
    struct statx status {};
    if (::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME, &status) != 0 || (status.stx_mask & STATX_BTIME) == 0)
        return std::nullopt;
    return Foundation::Instant{std::chrono::seconds{status.stx_btime.tv_sec}};
}

const std::vector<SampleFiles::Rational> northOfParis{{48, 1}, {51, 1}, {0, 1}};
const std::vector<SampleFiles::Rational> eastOfParis{{2, 1}, {21, 1}, {36, 1}};

class ImageFileMetadataTest : public testing::Test {
protected:
    [[nodiscard]] ImageFileMetadata read(const SampleFiles::Bytes& contents,
                                         std::string_view name = "photo.jpg") const {
        return ImageFileMetadataReader::read(m_folder.write(name, contents));
    }
    [[nodiscard]] ImageFileMetadata read(const Exif& exif) const { return read(SampleFiles::jpeg(exif)); }

    [[nodiscard]] std::optional<ProjectModel::Coordinate> coordinate(const Exif& exif) const {
        return read(exif).coordinate;
    }

    TemporaryFolder m_folder;
};

// The capture date

TEST(ParseExifDateTest, AppliesTheOffsetWhateverTheMachinesZone) {
    for (const char* zone : {"UTC", "America/New_York", "Asia/Tokyo"}) {
        const TimeZone set{zone};
        EXPECT_EQ(parsed("2023:07:14 18:22:05", "+02:00"), "2023-07-14T16:22:05Z") << zone;
    }
}

TEST(ParseExifDateTest, TakesLocalTimeWithoutAnOffset) {
    const TimeZone zone{"America/New_York"};
    EXPECT_EQ(parsed("2023:07:14 18:22:05"), "2023-07-14T22:22:05Z");
    EXPECT_EQ(parsed("2023:01:14 18:22:05"), "2023-01-14T23:22:05Z");
}

TEST(ParseExifDateTest, TakesLocalTimeWhereTheOffsetIsEmptyOrMalformed) {
    const TimeZone zone{"Asia/Tokyo"};
    for (const char* offset :
         {"", " ", "      ", "   :  ", "+2:00", "+02", "02:00", "+02:0", "+02:00:0", "+02:00x", " +02:00",
          "+02:60", "+24:00", "+99:00", "UTC", "Europe/Rome", "+-2:00", "ZZ"})
        EXPECT_EQ(parsed("2023:07:14 18:22:05", offset), "2023-07-14T09:22:05Z") << '"' << offset << '"';
}

TEST(ParseExifDateTest, ReadsEveryFormOfOffset) {
    const TimeZone zone{"Asia/Tokyo"};
    EXPECT_EQ(parsed("2023:07:14 18:22:05", "Z"), "2023-07-14T18:22:05Z");
    EXPECT_EQ(parsed("2023:07:14 18:22:05", "+00:00"), "2023-07-14T18:22:05Z");
    EXPECT_EQ(parsed("2023:07:14 18:22:05", "-00:00"), "2023-07-14T18:22:05Z");
    EXPECT_EQ(parsed("2023:07:14 18:22:05", "-05:30"), "2023-07-14T23:52:05Z");
    EXPECT_EQ(parsed("2023:07:14 18:22:05", "+05:45"), "2023-07-14T12:37:05Z");
    EXPECT_EQ(parsed("2023:12:31 23:30:00", "-01:00"), "2024-01-01T00:30:00Z");
}

TEST(ParseExifDateTest, RefusesWhatIsNoDate) {
    const TimeZone zone{"UTC"};
    for (const char* date : {"",
                             " ",
                             "0000:00:00 00:00:00",
                             "    :  :     :  :  ",
                             "2023-07-14 18:22:05",
                             "2023:07:14T18:22:05",
                             "2023:07:14",
                             "18:22:05",
                             "2023:07:14 18:22",
                             "2023:07:14 18:22:05.5",
                             "2023:07:14 18:22:05 ",
                             " 2023:07:14 18:22:05",
                             "2023:13:14 18:22:05",
                             "2023:02:29 18:22:05",
                             "2023:00:14 18:22:05",
                             "2023:07:00 18:22:05",
                             "2023:07:14 24:00:00",
                             "2023:07:14 18:60:05",
                             "2023:07:14 18:22:60",
                             "23:07:14 18:22:05",
                             "12023:07:14 18:22:05",
                             "-023:07:14 18:22:05",
                             "2023:07:14  18:22:05",
                             "2023:07:+4 18:22:05",
                             "yyyy:MM:dd HH:mm:ss",
                             "2023:07:14 18:22:05+02:00"}) {
        EXPECT_EQ(parsed(date), "none") << '"' << date << '"';
        EXPECT_EQ(parsed(date, "+02:00"), "none") << '"' << date << '"';
    }
}

TEST(ParseExifDateTest, KeepsOldYears) {
    const TimeZone zone{"UTC"};
    EXPECT_EQ(parsed("1601:06:06 16:39:33", "+02:00"), "1601-06-06T14:39:33Z");
    EXPECT_EQ(parsed("1601:06:06 16:39:33"), "1601-06-06T16:39:33Z");
    EXPECT_EQ(parsed("0001:01:01 00:00:00"), "0001-01-01T00:00:00Z");
}

TEST(ParseExifDateTest, RefusesInstantsOutsideOfTheYearsThatCanBeStored) {
    const TimeZone zone{"UTC"};
    EXPECT_EQ(parseExifDate("0001:01:01 00:00:00", "+02:00"), parseIso8601("0001-01-01T00:00:00Z"));
    const TimeZone east{"Asia/Tokyo"};
    EXPECT_EQ(parsed("0001:01:01 00:00:00"), "none");
    const TimeZone west{"America/New_York"};
    EXPECT_EQ(parsed("9999:12:31 23:59:59"), "none");
}

TEST(ParseExifDateTest, TakesTheFirstOfTwoEqualWallClockTimes) {
    const TimeZone zone{"Europe/Rome"}; // back to 02:00 at 03:00 on 29 October
    EXPECT_EQ(parsed("2023:10:29 01:59:59"), "2023-10-28T23:59:59Z");
    EXPECT_EQ(parsed("2023:10:29 02:30:00"), "2023-10-29T00:30:00Z");
    EXPECT_EQ(parsed("2023:10:29 03:00:00"), "2023-10-29T02:00:00Z");
}

TEST(ParseExifDateTest, TakesAWallClockTimeThatDoesNotOccurAsIfClocksHadNotMovedYet) {
    const TimeZone zone{"Europe/Rome"}; // on to 03:00 at 02:00 on 26 March
    EXPECT_EQ(parsed("2023:03:26 01:59:59"), "2023-03-26T00:59:59Z");
    EXPECT_EQ(parsed("2023:03:26 02:30:00"), "2023-03-26T01:30:00Z");
    EXPECT_EQ(parsed("2023:03:26 03:00:00"), "2023-03-26T01:00:00Z");
}

TEST(ParseExifDateTest, AgreesWithTheSystemOnEveryHourOfAYear) {
    for (const char* name :
         {"Europe/Rome", "America/New_York", "Australia/Lord_Howe", "Asia/Kathmandu", "Pacific/Apia"}) {
        const TimeZone zone{name};
        const Foundation::Instant start = *parseIso8601("2011-01-01T00:00:00Z");
        std::optional<Foundation::Instant> previous;
        for (int hour = 0; hour < 365 * 24; ++hour) {
            const Foundation::Instant instant = start + std::chrono::hours{hour};
            const std::time_t time = instant.time_since_epoch().count();
            std::tm local{};
            ::localtime_r(&time, &local);
            std::array<char, 32> wallClock{};
            std::strftime(wallClock.data(), wallClock.size(), "%Y:%m:%d %H:%M:%S", &local);
            const auto back = parseExifDate(wallClock.data(), std::nullopt);
            ASSERT_TRUE(back);
            // The second occurrence of an hour reads as the first.
            if (*back != instant) {
                EXPECT_LE(instant - *back, std::chrono::hours{1}) << name << ' ' << wallClock.data();
                EXPECT_GT(instant, *back) << name << ' ' << wallClock.data();
            }
        }
    }
}

TEST_F(ImageFileMetadataTest, JpegWithDateAndOffsetHasHighConfidence) {
    const ImageFileMetadata metadata =
        read(Exif{}.dateTimeOriginal("2023:07:14 18:22:05").offsetTimeOriginal("+02:00"));
    EXPECT_EQ(text(metadata.captureDate), "2023-07-14T16:22:05Z");
    EXPECT_FALSE(metadata.captureDateIsLowConfidence);
    EXPECT_EQ(metadata.coordinate, std::nullopt);
}

TEST_F(ImageFileMetadataTest, JpegWithoutOffsetIsInTheMachinesZone) {
    const TimeZone zone{"Asia/Tokyo"};
    const ImageFileMetadata metadata = read(Exif{}.dateTimeOriginal("2023:07:14 18:22:05"));
    EXPECT_EQ(text(metadata.captureDate), "2023-07-14T09:22:05Z");
    EXPECT_FALSE(metadata.captureDateIsLowConfidence);
}

TEST_F(ImageFileMetadataTest, EmptyOffsetTagFallsBackToLocalTime) {
    const TimeZone zone{"Asia/Tokyo"};
    const ImageFileMetadata metadata =
        read(Exif{}.dateTimeOriginal("2023:07:14 18:22:05").offsetTimeOriginal(""));
    EXPECT_EQ(text(metadata.captureDate), "2023-07-14T09:22:05Z");
    EXPECT_FALSE(metadata.captureDateIsLowConfidence);
}

TEST_F(ImageFileMetadataTest, OffsetOfAnotherTypeIsNoText) {
    const TimeZone zone{"UTC"};
    Exif exif;
    exif.dateTimeOriginal("2023:07:14 18:22:05");
    exif.photo.push_back(SampleFiles::textField(0x9011, "+02:00", true, 7));
    EXPECT_EQ(text(read(exif).captureDate), "2023-07-14T18:22:05Z");
}

TEST_F(ImageFileMetadataTest, DateOfAnotherTypeIsNoText) {
    Exif exif;
    exif.photo.push_back(SampleFiles::textField(0x9003, "2023:07:14 18:22:05", true, 7));
    EXPECT_TRUE(read(exif).captureDateIsLowConfidence);
}

TEST_F(ImageFileMetadataTest, DateWithoutItsTrailingNulIsRead) {
    Exif exif;
    exif.photo.push_back(SampleFiles::textField(0x9003, "2023:07:14 18:22:05", false));
    exif.photo.push_back(SampleFiles::textField(0x9011, "+02:00", false));
    EXPECT_EQ(text(read(exif).captureDate), "2023-07-14T16:22:05Z");
}

TEST_F(ImageFileMetadataTest, TextEndsAtItsFirstNul) {
    Exif exif;
    exif.photo.push_back(
        SampleFiles::textField(0x9003, std::string_view{"2023:07:14 18:22:05\0\0\0rest", 26}));
    exif.photo.push_back(SampleFiles::textField(0x9011, std::string_view{"+02:00\0\0", 8}));
    EXPECT_EQ(text(read(exif).captureDate), "2023-07-14T16:22:05Z");
}

TEST_F(ImageFileMetadataTest, OtherDatesAreNotCaptureDates) {
    Exif exif;
    exif.image.push_back(SampleFiles::textField(0x0132, "2020:01:01 00:00:00")); // ModifyDate
    exif.photo.push_back(SampleFiles::textField(0x9004, "2020:01:01 00:00:00")); // DateTimeDigitized
    exif.photo.push_back(SampleFiles::textField(0x9010, "+02:00"));              // OffsetTime
    exif.gps.push_back(SampleFiles::textField(0x001D, "2020:01:01"));            // GPSDateStamp
    const ImageFileMetadata metadata = read(exif);
    EXPECT_TRUE(metadata.captureDateIsLowConfidence);
    EXPECT_EQ(metadata.captureDate, birthTime(m_folder.path() / "photo.jpg"));
}

TEST_F(ImageFileMetadataTest, OffsetOfTheModificationDateDoesNotCount) {
    const TimeZone zone{"UTC"};
    Exif exif;
    exif.dateTimeOriginal("2023:07:14 18:22:05");
    exif.photo.push_back(SampleFiles::textField(0x9010, "+02:00"));
    exif.photo.push_back(SampleFiles::textField(0x9012, "+02:00"));
    EXPECT_EQ(text(read(exif).captureDate), "2023-07-14T18:22:05Z");
}

TEST_F(ImageFileMetadataTest, DateThatDoesNotParseGivesTheCreationDateWithLowConfidence) {
    const ImageFileMetadata metadata = read(Exif{}.dateTimeOriginal("0000:00:00 00:00:00"));
    EXPECT_TRUE(metadata.captureDateIsLowConfidence);
    EXPECT_EQ(metadata.captureDate, birthTime(m_folder.path() / "photo.jpg"));
}

TEST_F(ImageFileMetadataTest, PngWithoutExifHasTheCreationDateAndLowConfidence) {
    const ImageFileMetadata metadata = read(SampleFiles::png(), "photo.png");
    EXPECT_EQ(metadata.captureDate, birthTime(m_folder.path() / "photo.png"));
    EXPECT_TRUE(metadata.captureDateIsLowConfidence);
}

TEST_F(ImageFileMetadataTest, PngWithoutADateStillHasItsPosition) {
    const Exif exif = Exif{}.latitude(northOfParis, "N").longitude(eastOfParis, "E");
    const ImageFileMetadata metadata = read(SampleFiles::png(SampleFiles::tiff(exif)), "photo.png");
    EXPECT_TRUE(metadata.captureDateIsLowConfidence);
    EXPECT_EQ(metadata.captureDate, birthTime(m_folder.path() / "photo.png"));
    ASSERT_TRUE(metadata.coordinate);
    EXPECT_DOUBLE_EQ(metadata.coordinate->latitude, 48.85);
}

TEST_F(ImageFileMetadataTest, FileThatIsNoImageHasTheCreationDateOnly) {
    const ImageFileMetadata metadata = read(SampleFiles::bytesOf("just a text, long enough"), "notes.txt");
    EXPECT_EQ(metadata.captureDate, birthTime(m_folder.path() / "notes.txt"));
    EXPECT_EQ(metadata.coordinate, std::nullopt);
    EXPECT_TRUE(metadata.captureDateIsLowConfidence);
}

TEST_F(ImageFileMetadataTest, EmptyFileAndFolderHaveTheCreationDateOnly) {
    const ImageFileMetadata ofEmpty = read(SampleFiles::Bytes{});
    EXPECT_EQ(ofEmpty.captureDate, birthTime(m_folder.path() / "photo.jpg"));
    EXPECT_EQ(ImageFileMetadataReader::read(m_folder.path()).captureDate, birthTime(m_folder.path()));
}

TEST_F(ImageFileMetadataTest, MissingFileHasNothing) {
    const ImageFileMetadata nothing;
    EXPECT_EQ(ImageFileMetadataReader::read(m_folder.path() / "none.jpg"), nothing);
    EXPECT_TRUE(nothing.captureDateIsLowConfidence);
}

TEST_F(ImageFileMetadataTest, PipeIsNotWaitedFor) {
    const std::filesystem::path pipe = m_folder.path() / "pipe.jpg";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_TRUE(ImageFileMetadataReader::read(pipe).captureDateIsLowConfidence);
}

// The position

TEST_F(ImageFileMetadataTest, SouthAndWestAreNegative) {
    const auto position = coordinate(Exif{}.latitude(northOfParis, "S").longitude(eastOfParis, "W"));
    ASSERT_TRUE(position);
    EXPECT_DOUBLE_EQ(position->latitude, -48.85);
    EXPECT_DOUBLE_EQ(position->longitude, -2.36);
}

TEST_F(ImageFileMetadataTest, OnlyTheExactReferencesNegate) {
    for (const char* reference : {"s", "w", "N", "E", "", "South", " S", "S "}) {
        const auto position =
            coordinate(Exif{}.latitude(northOfParis, reference).longitude(eastOfParis, reference));
        ASSERT_TRUE(position) << reference;
        EXPECT_DOUBLE_EQ(position->latitude, 48.85) << reference;
        EXPECT_DOUBLE_EQ(position->longitude, 2.36) << reference;
    }
    const auto crossed = coordinate(Exif{}.latitude(northOfParis, "W").longitude(eastOfParis, "S"));
    ASSERT_TRUE(crossed);
    EXPECT_DOUBLE_EQ(crossed->latitude, 48.85);
    EXPECT_DOUBLE_EQ(crossed->longitude, 2.36);
}

TEST_F(ImageFileMetadataTest, MissingReferencesLeaveThePositionPositive) {
    Exif exif;
    exif.gps.push_back(SampleFiles::rationalField(2, northOfParis));
    exif.gps.push_back(SampleFiles::rationalField(4, eastOfParis));
    const auto position = coordinate(exif);
    ASSERT_TRUE(position);
    EXPECT_DOUBLE_EQ(position->latitude, 48.85);
}

TEST_F(ImageFileMetadataTest, ReferenceWithoutItsNulCounts) {
    Exif exif;
    exif.gps.push_back(SampleFiles::textField(1, "S", false));
    exif.gps.push_back(SampleFiles::rationalField(2, northOfParis));
    exif.gps.push_back(SampleFiles::rationalField(4, eastOfParis));
    EXPECT_DOUBLE_EQ(coordinate(exif)->latitude, -48.85);
}

TEST_F(ImageFileMetadataTest, LatitudeWithoutLongitudeIsNoCoordinate) {
    EXPECT_EQ(coordinate(Exif{}.latitude(northOfParis, "N")), std::nullopt);
    EXPECT_EQ(coordinate(Exif{}.longitude(eastOfParis, "E")), std::nullopt);
}

TEST_F(ImageFileMetadataTest, ZeroZeroIsAPosition) {
    const std::vector<SampleFiles::Rational> zero{{0, 1}, {0, 1}, {0, 1}};
    const ProjectModel::Coordinate expected{0, 0};
    EXPECT_EQ(coordinate(Exif{}.latitude(zero, "N").longitude(zero, "E")), expected);
}

TEST_F(ImageFileMetadataTest, PositionsAreNotRangeChecked) {
    const auto position = coordinate(Exif{}.latitude({{4'000'000'000, 1}}, "N").longitude({{400, 1}}, "W"));
    ASSERT_TRUE(position);
    EXPECT_DOUBLE_EQ(position->latitude, 4e9);
    EXPECT_DOUBLE_EQ(position->longitude, -400);
}

TEST_F(ImageFileMetadataTest, FewerThanThreeFractionsAreEnough) {
    const auto position = coordinate(Exif{}.latitude({{4885, 100}}, "N").longitude({{2, 1}, {216, 10}}, "E"));
    ASSERT_TRUE(position);
    EXPECT_DOUBLE_EQ(position->latitude, 48.85);
    EXPECT_DOUBLE_EQ(position->longitude, 2.36);
}

TEST_F(ImageFileMetadataTest, FractionWithoutADenominatorIsNoPosition) {
    for (const SampleFiles::Rational& broken : {SampleFiles::Rational{0, 0}, {1, 0}}) {
        EXPECT_EQ(coordinate(Exif{}.latitude({broken, {51, 1}, {0, 1}}, "N").longitude(eastOfParis, "E")),
                  std::nullopt);
        EXPECT_EQ(coordinate(Exif{}.latitude({{48, 1}, {51, 1}, broken}, "N").longitude(eastOfParis, "E")),
                  std::nullopt);
    }
    EXPECT_EQ(coordinate(Exif{}.latitude({}, "N").longitude(eastOfParis, "E")), std::nullopt);
}

TEST_F(ImageFileMetadataTest, PositionOfAnotherTypeIsNotNumeric) {
    Exif exif;
    exif.gps.push_back(SampleFiles::textField(2, "48.85"));
    exif.gps.push_back(SampleFiles::rationalField(4, eastOfParis));
    EXPECT_EQ(coordinate(exif), std::nullopt);
}

// The containers

class ImageContainerTest : public ImageFileMetadataTest {
protected:
    ImageContainerTest() {
        m_exif.orientation(6)
            .dateTimeOriginal("2023:07:14 18:22:05")
            .offsetTimeOriginal("-05:30")
            .latitude(northOfParis, "S")
            .longitude(eastOfParis, "W");
    }

    void expectFound(const SampleFiles::Bytes& contents, std::string_view name) const {
        const ImageFileMetadata metadata = read(contents, name);
        EXPECT_EQ(text(metadata.captureDate), "2023-07-14T23:52:05Z") << name;
        EXPECT_FALSE(metadata.captureDateIsLowConfidence) << name;
        ASSERT_TRUE(metadata.coordinate) << name;
        EXPECT_DOUBLE_EQ(metadata.coordinate->latitude, -48.85) << name;
        EXPECT_DOUBLE_EQ(metadata.coordinate->longitude, -2.36) << name;
    }

    Exif m_exif;
};

TEST_F(ImageContainerTest, JpegInBothByteOrders) {
    expectFound(SampleFiles::jpeg(SampleFiles::tiff(m_exif, false)), "little.jpg");
    expectFound(SampleFiles::jpeg(SampleFiles::tiff(m_exif, true)), "big.jpg");
}

TEST_F(ImageContainerTest, JpegWhoseExifFollowsOtherSegments) {
    SampleFiles::Bytes bytes = SampleFiles::jpeg(m_exif);
    SampleFiles::Bytes before{0xFF, 0xE0, 0x00, 0x10};
    SampleFiles::append(before, std::string_view{"JFIF\0\1\1\0\0\1\0\1\0\0", 14});
    SampleFiles::append(before, {0xFF, 0xFF, 0xFF, 0xE1, 0x00, 0x08});
    SampleFiles::append(before, "http:/");
    bytes.insert(bytes.begin() + 2, before.begin(), before.end());
    expectFound(bytes, "photo.jpg");
}

TEST_F(ImageContainerTest, JpegThatIsCutOffAfterItsExif) {
    SampleFiles::Bytes bytes = SampleFiles::jpeg(m_exif);
    bytes.resize(bytes.size() - 100);
    expectFound(bytes, "photo.jpg");
}

TEST_F(ImageContainerTest, JpegThatIsCutOffInsideItsExifHasNone) {
    SampleFiles::Bytes bytes = SampleFiles::jpeg(m_exif);
    bytes.resize(12 + SampleFiles::tiff(m_exif).size() - 1);
    EXPECT_TRUE(read(bytes).captureDateIsLowConfidence);
}

TEST_F(ImageContainerTest, Png) {
    expectFound(SampleFiles::png(SampleFiles::tiff(m_exif)), "first.png");
    expectFound(SampleFiles::png(SampleFiles::tiff(m_exif, true), true), "last.png");
}

TEST_F(ImageContainerTest, PngWithTheOlderTextForm) {
    const SampleFiles::Bytes block =
        SampleFiles::joined(std::string_view{"Exif\0\0", 6}, SampleFiles::tiff(m_exif));
    SampleFiles::Bytes text =
        SampleFiles::joined(std::string_view{"Raw profile type exif\0", 22}, "\nexif\n",
                            std::to_string(1'000'000 + block.size()).replace(0, 1, "  "));
    for (std::size_t i = 0; i < block.size(); ++i) {
        constexpr std::string_view digits = "0123456789abcdef";
        if (i % 36 == 0)
            text.push_back('\n');
        text.push_back(static_cast<std::uint8_t>(digits[block[i] >> 4]));
        text.push_back(static_cast<std::uint8_t>(digits[block[i] & 15]));
    }
    text.push_back('\n');
    SampleFiles::Bytes bytes = SampleFiles::png();
    const SampleFiles::Bytes chunk = SampleFiles::pngChunk("tEXt", text);
    bytes.insert(bytes.begin() + 33, chunk.begin(), chunk.end()); // after the header chunk
    expectFound(bytes, "photo.png");
}

TEST_F(ImageContainerTest, Webp) {
    expectFound(SampleFiles::webp(SampleFiles::tiff(m_exif)), "photo.webp");
    SampleFiles::Bytes marked = SampleFiles::bytesOf(std::string_view{"Exif\0\0", 6});
    SampleFiles::append(marked, SampleFiles::tiff(m_exif, true));
    expectFound(SampleFiles::webp(marked), "marked.webp");
}

TEST_F(ImageContainerTest, TiffAndRawFilesBuiltOnIt) {
    SampleFiles::Bytes bytes = SampleFiles::tiff(m_exif);
    expectFound(bytes, "photo.tif");
    expectFound(bytes, "photo.nef");
    expectFound(SampleFiles::tiff(m_exif, true), "photo.dng");
    bytes[2] = 'U';
    bytes[3] = 0;
    expectFound(bytes, "photo.rw2");
    bytes[2] = 'R';
    bytes[3] = 'O';
    expectFound(bytes, "photo.orf");
}

TEST_F(ImageContainerTest, Heif) {
    const SampleFiles::Bytes block = SampleFiles::tiff(m_exif, true);
    expectFound(SampleFiles::heif(block), "photo.heic");
    expectFound(SampleFiles::heif(block, {.brand = "avif"}), "photo.avif");
    expectFound(SampleFiles::heif(block, {.itemLocationVersion = 0}), "version0.heic");
    expectFound(SampleFiles::heif(block, {.itemLocationVersion = 2}), "version2.heic");
    expectFound(SampleFiles::heif(block, {.isInItemData = true}), "inside.heic");
    expectFound(SampleFiles::heif(block, {.isSplit = true}), "split.heic");
    expectFound(SampleFiles::heif(block, {.beforeTiff = ""}), "close.heic");
}

TEST_F(ImageContainerTest, JpegXl) {
    SampleFiles::Bytes contents{0, 0, 0, 0};
    SampleFiles::append(contents, SampleFiles::tiff(m_exif));
    expectFound(SampleFiles::jpegXl(SampleFiles::box("Exif", contents)), "photo.jxl");
}

TEST_F(ImageContainerTest, JpegXlWithACompressedBox) {
    SampleFiles::Bytes contents{0, 0, 0, 0};
    SampleFiles::append(contents, SampleFiles::tiff(m_exif));
    const SampleFiles::Bytes stream = SampleFiles::joined("Exif", SampleFiles::brotli(contents));
    expectFound(SampleFiles::jpegXl(SampleFiles::box("brob", stream)), "photo.jxl");
}

TEST_F(ImageContainerTest, CanonCr3) {
    SampleFiles::Bytes exif = SampleFiles::tiff({.image = m_exif.photo, .photo = {}, .gps = {}});
    SampleFiles::Bytes gps = SampleFiles::tiff({.image = m_exif.gps, .photo = {}, .gps = {}});
    SampleFiles::Bytes canon{0x85, 0xC0, 0xB6, 0x87, 0x82, 0x0F, 0x11, 0xE0,
                             0x81, 0x11, 0xF4, 0xCE, 0x46, 0x2B, 0x6A, 0x48};
    SampleFiles::append(canon, SampleFiles::box("CMT1", SampleFiles::tiff(Exif{}.orientation(1))));
    SampleFiles::append(canon, SampleFiles::box("CMT2", exif));
    SampleFiles::append(canon, SampleFiles::box("CMT4", gps));
    SampleFiles::Bytes file =
        SampleFiles::box("ftyp", SampleFiles::bytesOf(std::string_view{"crx \0\0\0\1crx isom", 16}));
    SampleFiles::append(file, SampleFiles::box("moov", SampleFiles::box("uuid", canon)));
    expectFound(file, "photo.cr3");
}

TEST_F(ImageContainerTest, FujifilmRaf) {
    const SampleFiles::Bytes picture = SampleFiles::jpeg(m_exif);
    SampleFiles::Bytes file = SampleFiles::bytesOf("FUJIFILMCCD-RAW 0201");
    file.resize(84);
    SampleFiles::appendBig(SampleFiles::appendBig(file, 160, 4), picture.size(), 4);
    file.resize(160);
    SampleFiles::append(file, picture);
    expectFound(file, "photo.raf");
}

TEST_F(ImageContainerTest, FormatsWithoutExifHaveTheCreationDate) {
    SampleFiles::Bytes gif = SampleFiles::bytesOf("GIF89a\1\0\1\0\0\0\0;");
    gif.resize(40);
    EXPECT_TRUE(read(gif, "a.gif").captureDateIsLowConfidence);
    SampleFiles::Bytes bitmap = SampleFiles::bytesOf("BM");
    bitmap.resize(80);
    EXPECT_TRUE(read(bitmap, "a.bmp").captureDateIsLowConfidence);
}

} // namespace
} // namespace PhotoSources
