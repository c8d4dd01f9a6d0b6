// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "VisionFiles.h"

#include <Analysis/NetworkFile.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <random>

namespace Analysis {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string complaint(const std::function<void()>& load) {
    try {
        load();
    } catch (const NetworkFileError& error) {
        return error.what();
    }
    return "no complaint";
}

TEST(NetworkFileTest, SaysWhichFileIsMissingAndHowToGetItBack) {
    const TemporaryFolder folder;
    const auto file = folder / "gone.bin";
    const auto isClear = AllOf(HasSubstr(file.string() + " is missing"), HasSubstr("to get it back"),
                               EndsWith("."), testing::Not(HasSubstr("\n")));
    EXPECT_THAT(complaint([&] { const VisionNetwork network(file); }), isClear);
    EXPECT_THAT(complaint([&] { const FaceFinder finder(file, sharedFile(FaceFinder::landmarksFileName)); }),
                isClear);
    EXPECT_THAT(complaint([&] { const FaceFinder finder(sharedFile(FaceFinder::detectorFileName), file); }),
                isClear);
    EXPECT_THAT(complaint([&] { const ImageLabels labels(file); }), isClear);
    EXPECT_THAT(complaint([&] { const Aesthetics aesthetics(file); }), isClear);
}

TEST(NetworkFileTest, TakesAFolderForAMissingFile) {
    const TemporaryFolder folder;
    EXPECT_THAT(complaint([&] { const NetworkFile file(folder / ""); }), HasSubstr("is missing"));
}

TEST(NetworkFileTest, NoticesEveryFlippedBitAndEveryLostByte) {
    const TemporaryFolder folder;
    const auto file = folder / "face.bin";
    const std::string bytes = bytesOf(sharedFile(FaceFinder::detectorFileName)).substr(24, 3003);
    write(file, wrapped(bytes));
    EXPECT_EQ(NetworkFile(file).bytes().size(), bytes.size());
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) {
        std::string damaged = wrapped(bytes);
        const std::size_t place = random() % damaged.size();
        if (i % 4 == 0)
            damaged.resize(place);
        else if (i % 4 == 1)
            damaged.push_back('x');
        else
            damaged[place] = static_cast<char>(damaged[place] ^ (1 << random() % 8));
        write(file, damaged);
        ASSERT_THAT(complaint([&] { const NetworkFile network(file); }),
                    AllOf(HasSubstr(file.string() + " is damaged"), HasSubstr("to get it back")))
            << i;
    }
}

TEST(NetworkFileTest, RefusesADamagedVisionNetwork) {
    const TemporaryFolder folder;
    const auto file = folder / "vision.bin";
    std::string bytes = bytesOf(sharedFile(VisionNetwork::fileName));
    bytes[bytes.size() / 2] ^= 4;
    write(file, bytes);
    EXPECT_THAT(complaint([&] { const VisionNetwork network(file); }), HasSubstr("is damaged"));
    bytes.resize(bytes.size() / 2);
    write(file, bytes);
    EXPECT_THAT(complaint([&] { const VisionNetwork network(file); }), HasSubstr("is damaged"));
}

TEST(NetworkFileTest, RefusesIntactFilesThatHoldAnotherNetworkOrNone) {
    const TemporaryFolder folder;
    const auto file = folder / "other.bin";
    for (const std::string& payload : {std::string(), std::string("hello"), std::string(100'000, '\0'),
                                       bytesOf(sharedFile(FaceFinder::landmarksFileName)).substr(24)}) {
        write(file, wrapped(payload));
        EXPECT_THAT(complaint([&] { const VisionNetwork network(file); }), HasSubstr("is damaged"));
        EXPECT_THAT(complaint([&] { const Aesthetics aesthetics(file); }), HasSubstr("is damaged"));
        EXPECT_THAT(
            complaint([&] { const FaceFinder finder(file, sharedFile(FaceFinder::landmarksFileName)); }),
            HasSubstr("is damaged"));
    }
}

TEST(NetworkFileTest, RefusesIntactFilesThatHoldAnImpossibleQualityModel) {
    const TemporaryFolder folder;
    const auto file = folder / "quality.bin";
    const std::string model = bytesOf(sharedFile(Aesthetics::fileName)).substr(24);
    write(file, wrapped(model));
    EXPECT_EQ(complaint([&] { const Aesthetics aesthetics(file); }), "no complaint");
    const auto changed = [&](std::size_t place, std::uint64_t value, std::size_t size) {
        std::string other = model;
        std::memcpy(other.data() + place, &value, size);
        return other;
    };
    constexpr std::uint64_t notANumber = 0x7ff8000000000000;
    // The numbers of features and of vectors; gamma; a lowest value that is not; and sizes.
    for (const std::string& other :
         {changed(0, 35, 4), changed(4, 0, 4), changed(4, 775, 4), changed(4, 0xffffffff, 4),
          changed(8, notANumber, 8), changed(24, 0x7fe0000000000000, 8), model.substr(0, model.size() - 4),
          model + "1234"}) {
        write(file, wrapped(other));
        EXPECT_THAT(complaint([&] { const Aesthetics aesthetics(file); }), HasSubstr("is damaged"));
    }
}

} // namespace
} // namespace Analysis
