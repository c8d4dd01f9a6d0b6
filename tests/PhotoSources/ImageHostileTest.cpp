// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifMaking.h>
#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/Painting.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vips/vips.h>

#include <random>

namespace {

using PhotoSources::ImageDecoder::decode;
using SampleFiles::Bytes;

class ImageHostileTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path at(const std::string& name) const { return m_folder.path() / name; }
    [[nodiscard]] static Bytes contents(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    TemporaryFolder m_folder;
};

/// Noise, so that a file's bytes spread evenly over its rows.
Painting::Canvas noise(int width, int height) {
    std::mt19937 random(7);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (std::uint8_t& sample : samples)
        sample = static_cast<std::uint8_t>(random() & 255);
    return Painting::fromSamples(width, height, 3, std::move(samples));
}

/// Makes a PNG announce another size; the sum over its header is made to agree.
Bytes announcing(Bytes png, std::uint32_t width, std::uint32_t height) {
    constexpr std::size_t header = 12, headerSize = 17; // "IHDR" and its thirteen bytes
    for (std::size_t i = 0; i < 4; ++i) {
        png[header + 4 + i] = static_cast<std::uint8_t>(width >> (24 - 8 * i));
        png[header + 8 + i] = static_cast<std::uint8_t>(height >> (24 - 8 * i));
    }
    std::uint32_t sum = 0xffffffff;
    for (std::size_t i = 0; i < headerSize; ++i) {
        sum ^= png[header + i];
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? 0xedb88320 : 0);
    }
    for (std::size_t i = 0; i < 4; ++i)
        png[header + headerSize + i] = static_cast<std::uint8_t>(~sum >> (24 - 8 * i));
    return png;
}

TEST_F(ImageHostileTest, WhatIsNoRegularFileYieldsNothingAndNeverBlocks) {
    EXPECT_FALSE(decode(at("missing.jpg"), 100));
    EXPECT_FALSE(decode("", 100));
    std::filesystem::create_directory(at("folder.jpg"));
    EXPECT_FALSE(decode(at("folder.jpg"), 100));
    ASSERT_EQ(::mkfifo(at("pipe.jpg").c_str(), 0600), 0);
    EXPECT_FALSE(decode(at("pipe.jpg"), 100));
    EXPECT_FALSE(decode("/dev/zero", 100));
    EXPECT_FALSE(decode("/dev/tty", 100));
    std::filesystem::create_symlink(at("loop.jpg"), at("loop.jpg"));
    EXPECT_FALSE(decode(at("loop.jpg"), 100));
    std::filesystem::create_symlink(at("nowhere"), at("dangling.jpg"));
    EXPECT_FALSE(decode(at("dangling.jpg"), 100));
}

TEST_F(ImageHostileTest, AnEmptyOrUnreadableFileYieldsNothing) {
    EXPECT_FALSE(decode(m_folder.write("empty.jpg", {}), 100));
    const auto file = Painting::quarters(40, 30).save(at("secret.jpg"));
    std::filesystem::permissions(file, std::filesystem::perms::none);
    // The superuser may read everything, so the test steps down.
    const bool isSuperuser = ::geteuid() == 0;
    if (isSuperuser) {
        std::filesystem::permissions(m_folder.path(), std::filesystem::perms::all);
        ASSERT_EQ(::seteuid(65534), 0);
    }
    EXPECT_FALSE(decode(file, 100));
    if (isSuperuser) {
        ASSERT_EQ(::seteuid(0), 0);
    }
}

TEST_F(ImageHostileTest, TextAndOtherFilesYieldNothing) {
    for (const char* name : {"a.jpg", "a.png", "a.heic", "a.nef", "a.dng", "a.svg", "a.txt"}) {
        EXPECT_FALSE(decode(m_folder.write(name, SampleFiles::bytesOf("Wish you were here!")), 100)) << name;
        EXPECT_FALSE(decode(m_folder.write(name, SampleFiles::bytesOf("P6 2 2 255 abcdefghijkl")), 100))
            << name;
        EXPECT_FALSE(
            decode(m_folder.write(name, SampleFiles::bytesOf("<svg xmlns='http://www.w3.org/2000/svg' "
                                                             "width='9' height='9'/>")),
                   100))
            << name;
        EXPECT_FALSE(decode(m_folder.write(name, Bytes(5000, 0)), 100)) << name;
        EXPECT_FALSE(decode(m_folder.write(name, Bytes(5000, 0xff)), 100)) << name;
        EXPECT_FALSE(decode(m_folder.write(name, SampleFiles::bytesOf("II*")), 100)) << name;
    }
}

TEST_F(ImageHostileTest, ATruncatedJpegShowsWhatThereIs) {
    const Bytes whole = contents(noise(400, 400).save(at("a.jpg[Q=90]")));
    const auto complete = decode(at("a.jpg"), 400);
    ASSERT_TRUE(complete);
    Bytes cut = whole;
    cut.resize(whole.size() * 7 / 10);
    const auto image = decode(m_folder.write("cut.jpg", cut), 400);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->height, 400);
    EXPECT_TRUE(
        std::equal(image->pixels.begin(), image->pixels.begin() + 400 * 3 * 200, complete->pixels.begin()));
}

TEST_F(ImageHostileTest, AJpegOfWhichNextToNothingIsLeftYieldsNothing) {
    const Bytes whole = contents(noise(400, 400).save(at("a.jpg[Q=90]")));
    for (const std::size_t size :
         {whole.size() / 10, std::size_t{700}, std::size_t{300}, std::size_t{20}, std::size_t{3}}) {
        Bytes cut = whole;
        cut.resize(size);
        EXPECT_FALSE(decode(m_folder.write("cut.jpg", cut), 400)) << size;
    }
}

TEST_F(ImageHostileTest, TruncatedFilesOfOtherFormatsNeverFailWorseThanYieldingNothing) {
    for (const char* name : {"a.png", "a.webp", "a.gif", "a.tif", "a.jxl", "a.avif", "a.heic", "a.jp2"}) {
        const Bytes whole = contents(noise(120, 90).save(at(name)));
        for (const int share : {1, 5, 20, 50, 80, 99}) {
            Bytes cut = whole;
            cut.resize(whole.size() * static_cast<std::size_t>(share) / 100);
            const auto image = decode(m_folder.write(std::string("cut-") + name, cut), 100);
            EXPECT_FALSE(image && share < 20) << name << ' ' << share;
            EXPECT_EQ(image ? image->width : 100, 100) << name;
        }
    }
    Bytes cut = contents(noise(300, 300).save(at("b.png")));
    cut.resize(cut.size() * 3 / 4);
    EXPECT_TRUE(decode(m_folder.write("cut.png", cut), 300)) << "three quarters of a PNG are worth showing";
}

TEST_F(ImageHostileTest, MutatedFilesNeverCrash) {
    std::mt19937 random(20);
    int shown = 0, rounds = 0;
    for (const char* name : {"a.jpg", "b.jpg[interlace]", "a.png", "a.webp", "a.gif",
                             "a.tif[compression=lzw]", "a.jxl", "a.heic"}) {
        const auto file = Painting::quarters(72, 54).withOrientation(5).inProfile("p3").save(at(name));
        const Bytes whole = contents(file);
        for (int round = 0; round < 60; ++round, ++rounds) {
            Bytes bytes = whole;
            for (int i = 0, changes = 1 + static_cast<int>(random() % 8); i < changes; ++i)
                bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
            if (random() % 4 == 0)
                bytes.resize(random() % bytes.size());
            const auto image = decode(m_folder.write("mutated", bytes), 50);
            if (image) {
                ++shown;
                EXPECT_EQ(image->pixels.size(), static_cast<std::size_t>(image->width * image->height) * 3);
                EXPECT_LE(std::max(image->width, image->height), 50);
            }
        }
    }
    EXPECT_GT(shown, rounds / 10) << "most mutations hit pixels, not structure";
}

TEST_F(ImageHostileTest, AnEnormousPngIsRefusedByItsHeader) {
    const Painting::Canvas black = Painting::plain(2000, 1500, {0, 0, 0});
    const Bytes png = contents(black.save(at("a.png")));
    ASSERT_TRUE(decode(m_folder.write("same.png", announcing(png, 2000, 1500)), 100)) << "the sum must agree";
    EXPECT_FALSE(decode(m_folder.write("bomb.png", announcing(png, 65536, 65536)), 100));
    EXPECT_FALSE(decode(m_folder.write("wide.png", announcing(png, 0x7fffffff, 1)), 100));
    const Bytes interlaced = contents(black.save(at("b.png[interlace]")));
    EXPECT_FALSE(decode(m_folder.write("interlaced.png", announcing(interlaced, 12000, 12000)), 100));
}

TEST_F(ImageHostileTest, AnEnormousAvifIsRefused) {
    // The announced size stands in the clear; patched to what decoders would have to allocate.
    Bytes bytes = contents(Painting::plain(64, 64, {9, 9, 9}).save(at("a.avif")));
    const std::string text(bytes.begin(), bytes.end());
    const std::size_t size = text.find("ispe");
    ASSERT_NE(size, std::string::npos);
    for (const std::size_t offset : {size + 8, size + 12}) {
        bytes[offset + 2] = 0x42; // 17000 pixels
        bytes[offset + 3] = 0x68;
    }
    EXPECT_FALSE(decode(m_folder.write("bomb.avif", bytes), 100));
}

TEST_F(ImageHostileTest, AnEnormousJpegDecodesAtReducedSize) {
    // 20000 x 14000 of one colour.
    const auto file =
        Painting::plain(400, 280, {200, 100, 50})
            .with([](VipsImage* in, VipsImage** out) { return vips_replicate(in, out, 50, 50, nullptr); })
            .save(at("huge.jpg"));
    const auto image = decode(file, 500);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 500);
    EXPECT_EQ(image->height, 350);
    EXPECT_TRUE(Painting::isNear(Painting::at(*image, 0.5, 0.5), {200, 100, 50}, 3));
}

TEST_F(ImageHostileTest, ATwoHundredMegapixelHeicDecodesInBoundedMemory) {
    const Painting::Rgb colour{200, 100, 50};
    HeifMaking::Layout layout;
    layout.isGrid = true;
    layout.columns = 16;
    layout.rows = 12;
    layout.width = 16320;
    layout.height = 12240;
    const auto tile = HeifMaking::encoded(1024, 1024, {colour, colour, colour, colour});
    const auto file = m_folder.write("huge.heic", HeifMaking::file({tile}, layout));
    const auto image = decode(file, 400);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 400);
    EXPECT_EQ(image->height, 300);
    EXPECT_TRUE(Painting::isNear(Painting::at(*image, 0.5, 0.5), colour, 4));
}

TEST_F(ImageHostileTest, AGridThatClaimsMoreThanAnyCameraIsRefused) {
    HeifMaking::Layout layout;
    layout.isGrid = true;
    layout.columns = 200;
    layout.rows = 80;
    const auto tile = HeifMaking::encoded(256, 256, {});
    EXPECT_FALSE(decode(m_folder.write("bomb.heic", HeifMaking::file({tile}, layout)), 100));
    // Tiles that lie outside of the picture would be work for nothing.
    layout.width = 300;
    layout.height = 300;
    EXPECT_FALSE(decode(m_folder.write("outside.heic", HeifMaking::file({tile}, layout)), 100));
}

TEST_F(ImageHostileTest, AProgressiveJpegWithThousandsOfScansIsRefused) {
    const Bytes whole = contents(Painting::plain(4000, 3000, {9, 9, 9}).save(at("a.jpg[interlace]")));
    ASSERT_TRUE(decode(at("a.jpg"), 100));
    // The last scan, over and over.
    std::size_t last = 0;
    for (std::size_t i = 0; i + 1 < whole.size(); ++i)
        last = whole[i] == 0xff && whole[i + 1] == 0xda ? i : last;
    ASSERT_GT(last, 0U);
    Bytes bomb(whole.begin(), whole.end() - 2);
    for (int i = 0; i < 4000; ++i)
        bomb.insert(bomb.end(), whole.begin() + static_cast<std::ptrdiff_t>(last), whole.end() - 2);
    EXPECT_FALSE(decode(m_folder.write("bomb.jpg", bomb), 100));
}

TEST_F(ImageHostileTest, SaysNothingOnTheTerminal) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    Bytes bytes = contents(noise(200, 200).save(at("a.png")));
    bytes.resize(bytes.size() / 2);
    static_cast<void>(decode(m_folder.write("a.png", bytes), 100));
    bytes = contents(noise(200, 200).save(at("a.jpg")));
    for (std::size_t i = bytes.size() / 2; i < bytes.size(); i += 20)
        bytes[i] = 0x55;
    static_cast<void>(decode(m_folder.write("a.jpg", bytes), 100));
    bytes = contents(noise(200, 200).save(at("a.tif")));
    bytes.resize(bytes.size() - 100);
    static_cast<void>(decode(m_folder.write("a.tif", bytes), 100));
    static_cast<void>(decode(m_folder.write("a.nef", bytes), 100));
    bytes = contents(noise(200, 200).save(at("a.jxl")));
    for (std::size_t i = bytes.size() / 2; i < bytes.size(); i += 20)
        bytes[i] = 0x55;
    static_cast<void>(decode(m_folder.write("a.jxl", bytes), 100));
    static_cast<void>(decode(m_folder.write("a.cr2", Bytes(4000, 0x49)), 100));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

} // namespace
