// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/ThumbnailLoader.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>
#include <vips/vips.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Foundation::Image;
using PhotoSources::ThumbnailLoader;

class ThumbnailLoaderTest : public testing::Test {
protected:
    fs::path photo(unsigned colour = 0xC02020, int width = 640, int height = 480) const {
        return TestPhotos::write(m_folder / "photo.jpg",
                                 {.width = width, .height = height, .colour = colour});
    }
    fs::path cache() const { return m_folder / "caches/thumbnails"; }
    std::set<std::string> cached() const {
        std::set<std::string> names;
        if (fs::exists(cache())) {
            for (const fs::directory_entry& entry : fs::directory_iterator{cache()})
                names.insert(entry.path().filename());
        }
        return names;
    }

    TemporaryFolder m_folder;
};

using Names = std::set<std::string>;

bool isAlmost(const Image& image, unsigned colour) {
    const std::uint8_t* middle = image.row(image.height / 2) + 3 * (image.width / 2);
    const std::array<int, 3> wanted{static_cast<int>(colour >> 16), static_cast<int>(colour >> 8 & 0xFF),
                                    static_cast<int>(colour & 0xFF)};
    return std::equal(wanted.begin(), wanted.end(), middle,
                      [](int a, int b) { return std::abs(a - b) <= 8; });
}

/// An EXIF segment that says "turn a quarter to the right" and carries a preview of its own.
std::string exifSegment(const std::string& preview) {
    const auto big = [](std::size_t number, int length) {
        std::string bytes;
        for (int shift = 8 * (length - 1); shift >= 0; shift -= 8)
            bytes += static_cast<char>(number >> shift & 0xFF);
        return bytes;
    };
    const auto entry = [&](std::size_t tag, std::size_t type, const std::string& value) {
        return big(tag, 2) + big(type, 2) + big(1, 4) + value;
    };
    constexpr std::size_t second = 8 + 2 + 12 + 4;
    constexpr std::size_t previewAt = second + 2 + 2 * 12 + 4;
    const std::string tiff = std::string{"MM\0*", 4} + big(8, 4) + big(1, 2) +
                             entry(0x0112, 3, big(6, 2) + big(0, 2)) + big(second, 4) + big(2, 2) +
                             entry(0x0201, 4, big(previewAt, 4)) + entry(0x0202, 4, big(preview.size(), 4)) +
                             big(0, 4) + preview;
    return "\xFF\xE1" + big(tiff.size() + 8, 2) + std::string{"Exif\0\0", 6} + tiff;
}

TEST_F(ThumbnailLoaderTest, TurnsThePhotoUprightAndNeverShowsItsEmbeddedPreview) {
    const std::string preview = Foundation::readFile(
        TestPhotos::write(m_folder / "preview.jpg", {.width = 160, .height = 120, .colour = 0x2020C0}));
    std::string jpeg = Foundation::readFile(photo(0xC02020, 640, 480));
    jpeg.insert(2, exifSegment(preview));
    Foundation::writeFileAtomically(m_folder / "photo.jpg", jpeg);
    ThumbnailLoader loader{cache()};
    for (int round = 0; round < 2; ++round) {
        const auto image = loader.thumbnail(m_folder / "photo.jpg", "K", 128);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->width, 96);
        EXPECT_EQ(image->height, 128);
        EXPECT_TRUE(isAlmost(*image, 0xC02020));
    }
}

TEST_F(ThumbnailLoaderTest, MakingOneTouchesNoFiles) {
    const ThumbnailLoader loader{cache()};
    EXPECT_FALSE(fs::exists(cache().parent_path()));
}

TEST_F(ThumbnailLoaderTest, BoundsTheLongestSideAndKeepsTheThumbnailUnderKeyAndSize) {
    ThumbnailLoader loader{cache()};
    const auto image = loader.thumbnail(photo(), "K", 512);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 512);
    EXPECT_EQ(image->height, 384);
    EXPECT_TRUE(isAlmost(*image, 0xC02020));
    EXPECT_EQ(cached(), Names{"K-512.jpg"});
}

TEST_F(ThumbnailLoaderTest, AskingTwiceDecodesThePhotoOnce) {
    ThumbnailLoader loader{cache()};
    ASSERT_TRUE(loader.thumbnail(photo(0xC02020), "K", 64));
    // Were the photo decoded again, its new colour would show.
    photo(0x2020C0);
    const auto again = loader.thumbnail(m_folder / "photo.jpg", "K", 64);
    ASSERT_TRUE(again);
    EXPECT_TRUE(isAlmost(*again, 0xC02020));
    fs::remove(m_folder / "photo.jpg");
    EXPECT_TRUE(ThumbnailLoader{cache()}.thumbnail(m_folder / "photo.jpg", "K", 64)) << "in the next run too";
}

TEST_F(ThumbnailLoaderTest, OneKeyAtTwoSizesGivesTwoFiles) {
    ThumbnailLoader loader{cache()};
    EXPECT_EQ(loader.thumbnail(photo(), "K", 256)->width, 256);
    EXPECT_EQ(loader.thumbnail(photo(), "K", 128)->width, 128);
    EXPECT_EQ(cached(), (Names{"K-128.jpg", "K-256.jpg"}));
    EXPECT_EQ(loader.thumbnail(photo(), "K", 256)->width, 256);
}

TEST_F(ThumbnailLoaderTest, ASmallPhotoIsNotScaledUp) {
    EXPECT_EQ(ThumbnailLoader{cache()}.thumbnail(photo(0x208020, 40, 30), "K", 512)->width, 40);
}

TEST_F(ThumbnailLoaderTest, AnUnreadablePhotoYieldsNoImageAndNoFile) {
    ThumbnailLoader loader{cache()};
    std::ofstream{m_folder / "text.jpg"} << "no picture at all";
    fs::create_directory(m_folder / "folder.jpg");
    EXPECT_FALSE(loader.thumbnail(m_folder / "missing.jpg", "A", 64));
    EXPECT_FALSE(loader.thumbnail(m_folder / "text.jpg", "B", 64));
    EXPECT_FALSE(loader.thumbnail(m_folder / "folder.jpg", "C", 64));
    EXPECT_FALSE(loader.thumbnail(photo(), "D", 0));
    EXPECT_EQ(cached(), Names{});
}

TEST_F(ThumbnailLoaderTest, ALargeCacheIsTrimmedOldestFirstAtTheFirstRequestAndNotAgain) {
    fs::create_directories(cache());
    constexpr std::uintmax_t tenth = 60'000'000;
    const auto now = fs::file_time_type::clock::now();
    const auto add = [&](const std::string& name, int age) {
        std::ofstream{cache() / name};
        fs::resize_file(cache() / name, tenth); // takes no room on the disk
        fs::last_write_time(cache() / name, now - std::chrono::hours{age});
    };
    for (int age = 1; age <= 10; ++age)
        add("age" + std::to_string(age), age);

    ThumbnailLoader loader{cache()};
    EXPECT_EQ(cached().size(), 10U);
    const fs::path file = photo();
    ASSERT_TRUE(loader.thumbnail(file, "K", 64));
    EXPECT_EQ(cached(), (Names{"age1", "age2", "age3", "age4", "age5", "age6", "age7", "age8", "K-64.jpg"}));

    add("late1", 20);
    add("late2", 20);
    ASSERT_TRUE(loader.thumbnail(file, "L", 64));
    EXPECT_TRUE(cached().contains("late1"));
    ASSERT_TRUE(ThumbnailLoader{cache()}.thumbnail(file, "M", 64));
    EXPECT_FALSE(cached().contains("late1"));
    EXPECT_FALSE(cached().contains("late2"));
    EXPECT_TRUE(cached().contains("age8"));
}

TEST_F(ThumbnailLoaderTest, AHalfWrittenOrForeignCacheFileIsDecodedAnew) {
    ThumbnailLoader loader{cache()};
    const fs::path file = photo();
    const Image whole = *loader.thumbnail(file, "K", 256);
    const std::string jpeg = Foundation::readFile(cache() / "K-256.jpg");
    for (const std::string& damaged :
         {std::string{}, jpeg.substr(0, jpeg.size() * 3 / 4), std::string(jpeg.size(), '\0'),
          std::string{"\xFF\xD8 not really \xFF\xD9"}, std::string{"a note"}}) {
        std::ofstream{cache() / "K-256.jpg", std::ios::binary} << damaged;
        const auto image = loader.thumbnail(file, "K", 256);
        ASSERT_TRUE(image);
        EXPECT_TRUE(isAlmost(*image, 0xC02020));
        EXPECT_EQ(Foundation::readFile(cache() / "K-256.jpg"), jpeg);
    }
}

TEST_F(ThumbnailLoaderTest, ACacheThatTakesNoFilesStillGivesThumbnails) {
    std::ofstream{m_folder / "file"} << "in the way";
    ThumbnailLoader loader{m_folder / "file/thumbnails"};
    EXPECT_TRUE(loader.thumbnail(photo(), "K", 64));
}

TEST_F(ThumbnailLoaderTest, WritesJpegOfQualityEightyWithoutMetadata) {
    ThumbnailLoader loader{cache()};
    const Image image = *loader.thumbnail(photo(0x3377AA), "K", 64);
    VipsImage* picture = vips_image_new_from_memory(image.pixels.data(), image.pixels.size(), image.width,
                                                    image.height, 3, VIPS_FORMAT_UCHAR);
    ASSERT_NE(picture, nullptr);
    void* expected = nullptr;
    std::size_t length = 0;
    ASSERT_EQ(vips_jpegsave_buffer(picture, &expected, &length, "Q", 80, "strip", TRUE, nullptr), 0);
    EXPECT_EQ(Foundation::readFile(cache() / "K-64.jpg"),
              std::string(static_cast<const char*>(expected), length));
    g_free(expected);
    g_object_unref(picture);
}

TEST_F(ThumbnailLoaderTest, ThreadsMayAskAtOnce) {
    ThumbnailLoader loader{cache()};
    const fs::path file = photo();
    std::array<bool, 4> ok{};
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < ok.size(); ++i)
            threads.emplace_back([&, i] {
                ok.at(i) = true;
                for (int size = 32; size < 48; ++size) {
                    const auto image = loader.thumbnail(file, "K", size);
                    ok.at(i) = ok.at(i) && image && image->width == size;
                }
            });
    }
    EXPECT_EQ(std::ranges::count(ok, true), 4);
    EXPECT_EQ(cached().size(), 16U);
}

} // namespace
