// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/Painting.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <vips/vips.h>

#include <algorithm>
#include <thread>

namespace {

using Painting::Canvas;
using Painting::Quarters;
using PhotoSources::ImageDecoder::decode;

class ImageDecoderTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path at(const std::string& name) const { return m_folder.path() / name; }

    TemporaryFolder m_folder;
};

/// The picture as a camera held another way would have stored it under this EXIF orientation.
Canvas storedUnder(int tag, const Canvas& upright) {
    const auto turned = [&](VipsAngle angle, std::optional<VipsDirection> mirror) {
        Canvas result =
            upright.with([&](VipsImage* in, VipsImage** out) { return vips_rot(in, out, angle, nullptr); });
        if (!mirror)
            return result;
        return result.with(
            [&](VipsImage* in, VipsImage** out) { return vips_flip(in, out, *mirror, nullptr); });
    };
    switch (tag) {
    case 2:
        return turned(VIPS_ANGLE_D0, VIPS_DIRECTION_HORIZONTAL);
    case 3:
        return turned(VIPS_ANGLE_D180, std::nullopt);
    case 4:
        return turned(VIPS_ANGLE_D0, VIPS_DIRECTION_VERTICAL);
    case 5:
        return turned(VIPS_ANGLE_D90, VIPS_DIRECTION_HORIZONTAL);
    case 6:
        return turned(VIPS_ANGLE_D270, std::nullopt);
    case 7:
        return turned(VIPS_ANGLE_D270, VIPS_DIRECTION_HORIZONTAL);
    case 8:
        return turned(VIPS_ANGLE_D90, std::nullopt);
    default:
        return turned(VIPS_ANGLE_D0, std::nullopt);
    }
}

TEST_F(ImageDecoderTest, DecodesEveryFormat) {
    const Canvas picture = Painting::quarters(96, 64);
    for (const char* name : {"a.jpg[Q=95]", "a.png", "a.tif", "a.webp[Q=95]", "a.gif", "a.jxl[Q=95]",
                             "a.avif[Q=90]", "a.heic[Q=90]", "a.jp2[Q=95]", "b.png[interlace]",
                             "b.jpg[Q=95,interlace]", "b.tif[tile,compression=deflate]", "b.webp[lossless]",
                             "c.tif[compression=lzw,predictor=horizontal]", "c.tif[compression=jpeg,Q=95]"}) {
        const std::filesystem::path file = picture.save(at(name));
        const auto image = decode(file, 1000);
        EXPECT_EQ(Painting::difference(image, {}, 12), "") << name;
        ASSERT_TRUE(image) << name;
        EXPECT_EQ(image->width, 96) << name;
        EXPECT_EQ(image->height, 64) << name;
        EXPECT_EQ(image->pixels.size(), 96U * 64 * 3) << name;
    }
}

TEST_F(ImageDecoderTest, GoesByContentNotByName) {
    const Canvas picture = Painting::quarters(96, 64);
    const auto jpeg = picture.save(at("a.jpg[Q=95]"));
    std::filesystem::rename(jpeg, at("photo.png"));
    EXPECT_EQ(Painting::difference(decode(at("photo.png"), 100)), "");
    std::filesystem::rename(at("photo.png"), at("photo.nef"));
    EXPECT_EQ(Painting::difference(decode(at("photo.nef"), 100)), "");
    std::filesystem::rename(at("photo.nef"), at("no ending [page=3]"));
    EXPECT_EQ(Painting::difference(decode(at("no ending [page=3]"), 100)), "");
}

TEST_F(ImageDecoderTest, TurnsEveryOrientationUpright) {
    const Canvas upright = Painting::quarters(120, 80);
    for (const char* ending : {".jpg[Q=95]", ".png", ".webp[lossless]", ".tif"}) {
        for (int tag = 1; tag <= 8; ++tag) {
            const auto file =
                storedUnder(tag, upright).withOrientation(tag).save(at("o" + std::to_string(tag) + ending));
            for (const int bound : {1000, 30}) {
                const auto image = decode(file, bound);
                EXPECT_EQ(Painting::difference(image), "") << tag << ending;
                ASSERT_TRUE(image);
                EXPECT_EQ(image->width, std::min(120, bound)) << tag << ending;
                EXPECT_EQ(image->height, std::min(80, bound * 2 / 3)) << tag << ending;
            }
        }
    }
}

TEST_F(ImageDecoderTest, DeliversAPortraitWithAnOrientationTagUprightWithinTheBound) {
    const auto file = storedUnder(6, Painting::quarters(600, 800)).withOrientation(6).save(at("p.jpg[Q=95]"));
    const auto image = decode(file, 200);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 150);
    EXPECT_EQ(image->height, 200);
    EXPECT_EQ(Painting::difference(image), "");
}

TEST_F(ImageDecoderTest, AnOrientationOutsideOneToEightMeansNone) {
    // Tag 0 is in files of real cameras; the byte is patched because no writer would make it.
    const auto file = Painting::quarters(120, 80).withOrientation(6).save(at("a.jpg[Q=95]"));
    std::ifstream in(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const std::size_t tag = bytes.find(std::string("\x01\x12\x00\x03\x00\x00\x00\x01\x00\x06", 10));
    ASSERT_NE(tag, std::string::npos);
    for (const char value : {'\x00', '\x09'}) {
        bytes[tag + 9] = value;
        const auto patched = m_folder.write("patched.jpg", SampleFiles::bytesOf(bytes));
        EXPECT_EQ(Painting::difference(decode(patched, 1000)), "");
    }
}

TEST_F(ImageDecoderTest, NeverEnlarges) {
    const Canvas picture = Painting::quarters(50, 40);
    for (const char* name : {"a.png", "a.jpg", "a.webp", "a.heic", "a.jxl"}) {
        const auto image = decode(picture.save(at(name)), 4000);
        ASSERT_TRUE(image) << name;
        EXPECT_EQ(image->width, 50) << name;
        EXPECT_EQ(image->height, 40) << name;
    }
}

TEST_F(ImageDecoderTest, KeepsTheLongestSideAtTheBoundAndTheAspect) {
    struct Case {
        int width, height, bound, expectedWidth, expectedHeight;
    };
    for (const Case& c :
         {Case{1000, 667, 512, 512, 342}, Case{667, 1000, 512, 342, 512}, Case{1601, 1600, 100, 100, 100},
          Case{1000, 1000, 999, 999, 999}, Case{333, 1000, 10, 3, 10}, Case{900, 600, 1, 1, 1},
          Case{3000, 2000, 300, 300, 200}}) {
        for (const char* ending : {".jpg", ".png", ".webp"}) {
            const auto file =
                Painting::quarters(c.width, c.height)
                    .save(at(std::to_string(c.width) + "x" + std::to_string(c.height) + ending));
            const auto image = decode(file, c.bound);
            ASSERT_TRUE(image) << file;
            EXPECT_EQ(image->width, c.expectedWidth) << file;
            EXPECT_EQ(image->height, c.expectedHeight) << file;
        }
    }
}

TEST_F(ImageDecoderTest, ASideNeverBecomesZero) {
    for (const char* ending : {".jpg", ".png", ".webp", ".tif", ".jxl"}) {
        const auto wide = decode(Painting::quarters(4000, 3).save(at(std::string("wide") + ending)), 100);
        ASSERT_TRUE(wide) << ending;
        EXPECT_EQ(wide->width, 100) << ending;
        EXPECT_EQ(wide->height, 1) << ending;
        const auto tall = decode(Painting::quarters(2, 9000).save(at(std::string("tall") + ending)), 64);
        ASSERT_TRUE(tall) << ending;
        EXPECT_EQ(tall->width, 1) << ending;
        EXPECT_EQ(tall->height, 64) << ending;
    }
    const auto point = decode(Painting::plain(1, 1, {10, 200, 30}).save(at("point.png")), 100);
    ASSERT_TRUE(point);
    EXPECT_EQ(point->pixels, (std::vector<std::uint8_t>{10, 200, 30}));
}

TEST_F(ImageDecoderTest, ABoundBelowOneYieldsNothing) {
    const auto file = Painting::quarters(50, 40).save(at("a.png"));
    EXPECT_FALSE(decode(file, 0));
    EXPECT_FALSE(decode(file, -5));
}

TEST_F(ImageDecoderTest, ShowsTheFirstFrameOfAnAnimation) {
    // Frames one below the other, which is how libvips keeps them.
    const Canvas first = Painting::quarters(64, 48);
    const Canvas second = Painting::plain(64, 48, {0, 0, 0});
    const Canvas frames = first.with([&](VipsImage* in, VipsImage** out) {
        VipsImage* both[] = {in, second.get()};
        return vips_arrayjoin(both, out, 2, "across", 1, nullptr);
    });
    vips_image_set_int(frames.get(), VIPS_META_PAGE_HEIGHT, 48);
    for (const char* name : {"a.gif", "a.webp[lossless]", "a.tif"}) {
        const auto image = decode(frames.save(at(name)), 200);
        ASSERT_TRUE(image) << name;
        EXPECT_EQ(image->width, 64) << name;
        EXPECT_EQ(image->height, 48) << name;
        EXPECT_EQ(Painting::difference(image, {}, 8), "") << name;
    }
}

TEST_F(ImageDecoderTest, LaysWhatIsTransparentOverBlack) {
    // The right half is clear, the bottom half as a whole half clear.
    const int width = 80, height = 60;
    std::vector<std::uint8_t> samples;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int alpha = x >= width / 2 ? 0 : y >= height / 2 ? 128 : 255;
            for (const int value : {200, 100, 40, alpha})
                samples.push_back(static_cast<std::uint8_t>(value));
        }
    }
    const Canvas picture = Painting::fromSamples(width, height, 4, samples);
    const Quarters expected{{200, 100, 40}, {0, 0, 0}, {100, 50, 20}, {0, 0, 0}};
    for (const char* name : {"a.png", "a.webp[lossless]", "a.tif", "a.jxl[lossless]"})
        EXPECT_EQ(Painting::difference(decode(picture.save(at(name)), 200), expected, 3), "") << name;
    for (const char* name : {"a.avif[Q=95]", "a.heic[Q=95]"})
        EXPECT_EQ(Painting::difference(decode(picture.save(at(name)), 200), expected, 12), "") << name;
}

TEST_F(ImageDecoderTest, ReadsSixteenBitGreyPaletteAndBilevelFiles) {
    const Canvas picture = Painting::quarters(80, 60);
    const Canvas wide = picture.with([](VipsImage* in, VipsImage** out) {
        return vips_colourspace(in, out, VIPS_INTERPRETATION_RGB16, nullptr);
    });
    EXPECT_EQ(Painting::difference(decode(wide.save(at("wide.png")), 200), {}, 1), "");
    EXPECT_EQ(Painting::difference(decode(wide.save(at("wide.tif")), 40), {}, 2), "");
    EXPECT_EQ(Painting::difference(decode(picture.save(at("p.png[palette]")), 200), {}, 3), "");

    const Quarters greys{{30, 30, 30}, {90, 90, 90}, {160, 160, 160}, {250, 250, 250}};
    const Canvas grey = Painting::quarters(80, 60, greys).with([](VipsImage* in, VipsImage** out) {
        return vips_extract_band(in, out, 0, nullptr);
    });
    const Canvas tagged = grey.with([](VipsImage* in, VipsImage** out) {
        return vips_copy(in, out, "interpretation", VIPS_INTERPRETATION_B_W, nullptr);
    });
    const Canvas wideGrey = tagged.with([](VipsImage* in, VipsImage** out) {
        return vips_colourspace(in, out, VIPS_INTERPRETATION_GREY16, nullptr);
    });
    EXPECT_EQ(Painting::difference(decode(tagged.save(at("grey.jpg[Q=95]")), 200), greys, 3), "");
    EXPECT_EQ(Painting::difference(decode(tagged.save(at("grey.png")), 20), greys, 3), "");
    EXPECT_EQ(Painting::difference(decode(wideGrey.save(at("grey16.png")), 200), greys, 1), "");
    EXPECT_EQ(Painting::difference(decode(wideGrey.save(at("grey16.tif")), 200), greys, 1), "");

    const Quarters bilevel{{0, 0, 0}, {255, 255, 255}, {255, 255, 255}, {0, 0, 0}};
    const Canvas bits = Painting::quarters(80, 60, bilevel).with([](VipsImage* in, VipsImage** out) {
        return vips_colourspace(in, out, VIPS_INTERPRETATION_B_W, nullptr);
    });
    EXPECT_EQ(Painting::difference(decode(bits.save(at("bits.png[bitdepth=1]")), 200), bilevel, 0), "");
    EXPECT_EQ(Painting::difference(decode(bits.save(at("bits.tif[bitdepth=1]")), 200), bilevel, 0), "");
    EXPECT_EQ(Painting::difference(decode(bits.save(at("fax.tif[bitdepth=1,compression=ccittfax4]")), 200),
                                   bilevel, 0),
              "");
}

TEST_F(ImageDecoderTest, ReadsFloatTiff) {
    const Canvas linear = Painting::quarters(80, 60).with([](VipsImage* in, VipsImage** out) {
        return vips_colourspace(in, out, VIPS_INTERPRETATION_scRGB, nullptr);
    });
    EXPECT_EQ(Painting::difference(decode(linear.save(at("f.tif")), 200), {}, 2), "");
}

TEST_F(ImageDecoderTest, DecodesTheSameFromManyThreads) {
    const auto jpeg = Painting::quarters(1200, 900).save(at("a.jpg"));
    const auto heic = Painting::quarters(300, 200).save(at("a.heic"));
    const auto webp = Painting::quarters(300, 200).save(at("a.webp"));
    const std::vector<std::filesystem::path> files{jpeg, heic, webp};
    std::vector<std::optional<Foundation::Image>> expected;
    for (const auto& file : files)
        expected.push_back(decode(file, 128));
    std::vector<int> wrong(4);
    {
        std::vector<std::jthread> threads;
        for (int& count : wrong) {
            threads.emplace_back([&] {
                for (int round = 0; round < 12; ++round) {
                    const std::size_t which = static_cast<std::size_t>(round) % files.size();
                    count += decode(files[which], 128) == expected[which] ? 0 : 1;
                }
            });
        }
    }
    EXPECT_EQ(wrong, (std::vector<int>{0, 0, 0, 0}));
}

} // namespace
