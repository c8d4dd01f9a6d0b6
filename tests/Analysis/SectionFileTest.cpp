// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/OfflineReverseGeocoder.h>
#include <Analysis/SectionFile.h>
#include <Foundation/AtomicFile.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>

namespace Analysis {
namespace {

using GazetteerFormat::GazetteerSection;
using GazetteerFormat::LandBorderSection;

/// Both files that the build makes.
struct KindOfFile {
    const GazetteerFormat::FileKind& kind;
    std::filesystem::path file;
};

class SectionFileTest : public testing::TestWithParam<KindOfFile> {
protected:
    static std::string complaintAbout(const std::filesystem::path& file) {
        try {
            const SectionFile opened(file, GetParam().kind);
            return {};
        } catch (const GazetteerError& error) {
            return error.what();
        }
    }

    static void write(const std::filesystem::path& file, std::string_view bytes) {
        std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

    const TemporaryFolder folder;
};

TEST_P(SectionFileTest, NamesTheMissingFileAndTheRemedyInOneSentence) {
    const std::string complaint = complaintAbout("/nowhere/places.bin");
    EXPECT_THAT(complaint,
                testing::AllOf(testing::StartsWith("The file of " + std::string(GetParam().kind.content)),
                               testing::HasSubstr("/nowhere/places.bin"), testing::HasSubstr("missing"),
                               testing::HasSubstr("build Roamly again"), testing::EndsWith(".")));
}

TEST_P(SectionFileTest, RefusesFoldersAndFilesOfAnotherKind) {
    EXPECT_THAT(complaintAbout(folder / ""), testing::HasSubstr("damaged"));
    write(folder / "empty", "");
    EXPECT_THAT(complaintAbout(folder / "empty"), testing::HasSubstr("damaged"));
    write(folder / "text", std::string(5000, 'x'));
    EXPECT_THAT(complaintAbout(folder / "text"), testing::HasSubstr("damaged"));
    const bool isGazetteer = GetParam().file == ROAMLY_GAZETTEER;
    EXPECT_THAT(complaintAbout(isGazetteer ? ROAMLY_LAND_BORDERS : ROAMLY_GAZETTEER),
                testing::HasSubstr("damaged"));
}

TEST_P(SectionFileTest, RefusesAnotherVersion) {
    std::string bytes = Foundation::readFile(GetParam().file);
    bytes[8] = static_cast<char>(bytes[8] + 1);
    write(folder / "file.bin", bytes);
    EXPECT_THAT(complaintAbout(folder / "file.bin"), testing::HasSubstr("another version"));
}

TEST_P(SectionFileTest, NoticesEveryDamage) {
    const auto file = folder / "file.bin";
    const std::string good = Foundation::readFile(GetParam().file);
    write(file, good);
    ASSERT_EQ(complaintAbout(file), "");

    // The header and the sections' table as often as what they lead to.
    const std::size_t tableEnd =
        sizeof(GazetteerFormat::Header) + GetParam().kind.sectionCount * sizeof(GazetteerFormat::Section);
    std::mt19937 random(11);
    for (int round = 0; round < 40; ++round) {
        const std::size_t position = random() % (round % 2 ? good.size() : tableEnd);
        std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(position));
        stream.put(static_cast<char>(good[position] ^ (1 << (random() % 8))));
        stream.close();
        const bool isPadding = complaintAbout(file).empty();
        // Between sections there are up to seven bytes that mean nothing.
        EXPECT_TRUE(!isPadding || good[position] == 0) << position;
        stream.open(file, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(position));
        stream.put(good[position]);
    }
    for (int round = 0; round < 10; ++round) {
        write(file, std::string_view(good).substr(0, random() % good.size()));
        EXPECT_NE(complaintAbout(file), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Files, SectionFileTest,
                         testing::Values(KindOfFile{GazetteerFormat::gazetteerKind, ROAMLY_GAZETTEER},
                                         KindOfFile{GazetteerFormat::landBordersKind, ROAMLY_LAND_BORDERS}),
                         [](const auto& test) { return test.index == 0 ? "Gazetteer" : "LandBorders"; });

template <typename Kind>
std::string notice(const SectionFile& file, Kind kind) {
    const auto text = file.section<char>(kind);
    return {text.begin(), text.end()};
}

TEST(PlaceFilesTest, EachNamesItsMakersAndLicenceInsideAndOnlyItsOwn) {
    const SectionFile gazetteer(ROAMLY_GAZETTEER, GazetteerFormat::gazetteerKind);
    EXPECT_THAT(notice(gazetteer, GazetteerSection::Notice),
                testing::AllOf(testing::HasSubstr("GeoNames"),
                               testing::HasSubstr("https://creativecommons.org/licenses/by/4.0/"),
                               testing::Not(testing::HasSubstr("OpenStreetMap"))));
    const SectionFile landBorders(ROAMLY_LAND_BORDERS, GazetteerFormat::landBordersKind);
    EXPECT_THAT(notice(landBorders, LandBorderSection::Notice),
                testing::AllOf(testing::HasSubstr("OpenStreetMap contributors"),
                               testing::HasSubstr("https://opendatacommons.org/licenses/odbl/1-0/"),
                               testing::Not(testing::HasSubstr("GeoNames"))));
}

} // namespace
} // namespace Analysis
