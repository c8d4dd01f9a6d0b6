// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/Painting.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <lcms2.h>
#include <vips/vips.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace {

using Painting::Canvas;
using Painting::Quarters;
using Painting::Rgb;
using PhotoSources::ImageDecoder::decode;

using ProfileBytes = std::vector<std::uint8_t>;

ProfileBytes bytesOf(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    ProfileBytes bytes(size);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

ProfileBytes rgbProfile(const cmsCIExyY& white, const cmsCIExyYTRIPLE& primaries, double gamma) {
    cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
    const std::array<cmsToneCurve*, 3> curves{curve, curve, curve};
    ProfileBytes bytes = bytesOf(cmsCreateRGBProfile(&white, &primaries, curves.data()));
    cmsFreeToneCurve(curve);
    return bytes;
}

const cmsCIExyY d65{0.3127, 0.3290, 1};

ProfileBytes adobeRgb() {
    return rgbProfile(d65, {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}}, 563.0 / 256);
}

ProfileBytes proPhoto() {
    return rgbProfile({0.3457, 0.3585, 1}, {{0.7347, 0.2653, 1}, {0.1596, 0.8404, 1}, {0.0366, 0.0001, 1}},
                      1.8);
}

class ImageColourTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path at(const std::string& name) const { return m_folder.path() / name; }
    [[nodiscard]] std::string write(const std::string& name, const ProfileBytes& profile) const {
        return m_folder.write(name, profile).string();
    }
    /// The picture's first sample triple as it stands in the file, without any conversion.
    [[nodiscard]] static Rgb stored(const Canvas& canvas) {
        const std::vector<std::uint8_t> samples = canvas.samples();
        return {samples[0], samples[1], samples[2]};
    }

    TemporaryFolder m_folder;
};

TEST_F(ImageColourTest, DisplayP3ComesOutInSrgb) {
    const Canvas picture = Painting::quarters(80, 60).inProfile("p3");
    ASSERT_FALSE(Painting::isNear(stored(picture), Quarters{}.topLeft, 8)) << "the test must be able to fail";
    for (const char* name :
         {"a.jpg[Q=95]", "a.png", "a.tif", "a.webp[lossless]", "a.heic[Q=95]", "a.avif[Q=95]"})
        EXPECT_EQ(Painting::difference(decode(picture.save(at(name)), 200), {}, 10), "") << name;
    EXPECT_EQ(Painting::difference(decode(picture.save(at("b.png")), 30), {}, 2), "");
}

TEST_F(ImageColourTest, AdobeRgbAndProPhotoComeOutInSrgb) {
    for (const ProfileBytes& profile : {adobeRgb(), proPhoto()}) {
        const Canvas picture = Painting::quarters(80, 60).inProfile(write("p.icc", profile));
        ASSERT_FALSE(Painting::isNear(stored(picture), Quarters{}.topLeft, 8));
        EXPECT_EQ(Painting::difference(decode(picture.save(at("a.png")), 200), {}, 3), "");
        EXPECT_EQ(Painting::difference(decode(picture.save(at("a.jpg[Q=95]")), 200), {}, 6), "");
        const Canvas wide = Painting::quarters(80, 60).with([&](VipsImage* in, VipsImage** out) {
            return vips_icc_transform(in, out, at("p.icc").c_str(), "input_profile", "srgb", "depth", 16,
                                      nullptr);
        });
        EXPECT_EQ(Painting::difference(decode(wide.save(at("wide.tif")), 200), {}, 2), "");
    }
}

TEST_F(ImageColourTest, ACameraSetToAdobeRgbIsBelievedWithoutAProfile) {
    const Canvas stored = Painting::quarters(80, 60).inProfile(write("p.icc", adobeRgb())).withoutProfile();
    const Canvas adobe =
        stored.withText("exif-ifd2-ColorSpace", "65535 (Uncalibrated, Short, 1 components, 2 bytes)")
            .withText("exif-ifd4-InteroperabilityIndex", "R03 (R03, ASCII, 4 components, 4 bytes)");
    EXPECT_EQ(Painting::difference(decode(adobe.save(at("a.jpg[Q=95]")), 200), {}, 6), "");
    const Canvas old = stored.withText("exif-ifd2-ColorSpace", "2 (2, Short, 1 components, 2 bytes)");
    EXPECT_EQ(Painting::difference(decode(old.save(at("b.jpg[Q=95]")), 200), {}, 6), "");
    // Uncalibrated alone says nothing.
    const Canvas other =
        stored.withText("exif-ifd2-ColorSpace", "65535 (Uncalibrated, Short, 1 components, 2 bytes)");
    EXPECT_NE(Painting::difference(decode(other.save(at("c.jpg[Q=95]")), 200), {}, 6), "");
}

TEST_F(ImageColourTest, CmykWithItsProfileComesOutInSrgb) {
    // Softer colours: what a press cannot print cannot come back.
    const Quarters colours{{180, 70, 60}, {90, 150, 90}, {70, 80, 130}, {220, 215, 200}};
    const Canvas picture = Painting::quarters(80, 60, colours).inProfile("cmyk");
    EXPECT_EQ(Painting::difference(decode(picture.save(at("a.tif")), 200), colours, 10), "");
    // libjpeg's writer marks CMYK files as Adobe's and stores them inverted, as every program does.
    EXPECT_EQ(Painting::difference(decode(picture.save(at("a.jpg[Q=95]")), 200), colours, 12), "");
}

TEST_F(ImageColourTest, CmykWithoutAProfileIsNotInvertedNorFlat) {
    const Quarters colours{{180, 70, 60}, {90, 150, 90}, {70, 80, 130}, {220, 215, 200}};
    const Canvas picture = Painting::quarters(80, 60, colours).inProfile("cmyk").withoutProfile();
    EXPECT_EQ(Painting::difference(decode(picture.save(at("a.jpg[Q=95]")), 200), colours, 16), "");
    EXPECT_EQ(Painting::difference(decode(picture.save(at("a.tif")), 200), colours, 16), "");
}

TEST_F(ImageColourTest, YcckFromAdobeComesOutInSrgb) {
    const Quarters colours{{180, 70, 60}, {90, 150, 90}, {70, 80, 130}, {220, 215, 200}};
    const Canvas cmyk = Painting::quarters(80, 60, colours).inProfile("cmyk").withoutProfile();
    std::vector<std::uint8_t> samples = cmyk.samples();
    // The marker says how the first three channels are coded; they are coded here, the writer inverts them.
    for (std::size_t i = 0; i < samples.size(); i += 4) {
        const double r = samples[i], g = samples[i + 1], b = samples[i + 2];
        const double y = 0.299 * r + 0.587 * g + 0.114 * b;
        const auto store = [&](std::size_t at, double value) {
            samples[i + at] = static_cast<std::uint8_t>(255 - std::clamp(std::lround(value), 0L, 255L));
        };
        store(0, y);
        store(1, 128 + 0.564 * (b - y));
        store(2, 128 + 0.713 * (r - y));
    }
    const Canvas coded = Painting::fromSamples(80, 60, 4, samples).with([](VipsImage* in, VipsImage** out) {
        return vips_copy(in, out, "interpretation", VIPS_INTERPRETATION_CMYK, nullptr);
    });
    const auto file = coded.save(at("a.jpg[Q=98]"));
    std::ifstream in(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const std::size_t marker = bytes.find("Adobe");
    ASSERT_NE(marker, std::string::npos);
    ASSERT_EQ(bytes[marker + 11], 0);
    bytes[marker + 11] = 2;
    const auto patched = m_folder.write("ycck.jpg", SampleFiles::bytesOf(bytes));
    EXPECT_EQ(Painting::difference(decode(patched, 200), colours, 18), "");
}

TEST_F(ImageColourTest, AvifIsReadInItsCodePoints) {
    // The numbers of Display P3, and no profile: the file's code points alone say so. Not every libheif
    // writes any.
    const auto numbers = Painting::quarters(80, 60).inProfile("p3").withoutProfile().save(at("numbers.png"));
    const auto avif = [&](const std::string& name, const std::string& primaries) {
        const auto file = at(name);
        const std::string command =
            "ffmpeg -nostdin -v error -i '" + numbers.string() +
            "' -vf scale=out_color_matrix=smpte170m:out_range=pc,format=yuv444p,setparams=range=pc"
            ":color_trc=iec61966-2-1:colorspace=smpte170m:color_primaries=" +
            primaries + " -c:v libaom-av1 -crf 5 -still-picture 1 '" + file.string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return file;
    };
    EXPECT_EQ(Painting::difference(decode(avif("p3.avif", "smpte432"), 200), {}, 8), "");
    EXPECT_NE(Painting::difference(decode(avif("srgb.avif", "bt709"), 200), {}, 8), "");
}

TEST_F(ImageColourTest, AGreyProfileIsHonoured) {
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 1.0);
    const ProfileBytes linear = bytesOf(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    const Canvas grey = Painting::fromSamples(40, 40, 1, std::vector<std::uint8_t>(1600, 55));
    const auto image = decode(grey.withProfileBytes(linear).save(at("a.png")), 100);
    ASSERT_TRUE(image);
    // 55 / 255 of the light is 128 in sRGB.
    EXPECT_TRUE(Painting::isNear(Painting::at(*image, 0.5, 0.5), {128, 128, 128}, 2))
        << Painting::at(*image, 0.5, 0.5);
}

TEST_F(ImageColourTest, LabTiffComesOutInSrgb) {
    const Canvas lab = Painting::quarters(80, 60).with([](VipsImage* in, VipsImage** out) {
        return vips_colourspace(in, out, VIPS_INTERPRETATION_LAB, nullptr);
    });
    EXPECT_EQ(Painting::difference(decode(lab.save(at("a.tif")), 200), {}, 4), "");
}

TEST_F(ImageColourTest, ABrokenOrForeignProfileIsAsGoodAsNone) {
    const Canvas picture = Painting::quarters(80, 60);
    ProfileBytes broken = adobeRgb();
    broken.resize(broken.size() / 2);
    const ProfileBytes junk(300, 0x5a);
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 1.0);
    const ProfileBytes grey = bytesOf(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    for (const ProfileBytes& profile : {broken, junk, ProfileBytes{0}, grey}) {
        for (const char* name : {"a.jpg[Q=95]", "a.tif", "a.webp[lossless]"})
            EXPECT_EQ(Painting::difference(decode(picture.withProfileBytes(profile).save(at(name)), 200)), "")
                << name;
    }
}

TEST_F(ImageColourTest, NeutralsStayNeutralThroughEveryProfile) {
    const Quarters greys{{20, 20, 20}, {90, 90, 90}, {160, 160, 160}, {255, 255, 255}};
    for (const std::string& profile : {std::string("p3"), std::string("srgb"), write("adobe.icc", adobeRgb()),
                                       write("pro.icc", proPhoto())}) {
        const Canvas picture = Painting::quarters(80, 60, greys).inProfile(profile);
        EXPECT_EQ(Painting::difference(decode(picture.save(at("a.png")), 200), greys, 2), "") << profile;
    }
}

} // namespace
