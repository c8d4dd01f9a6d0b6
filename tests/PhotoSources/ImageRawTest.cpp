// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/Painting.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>

namespace {

using Painting::Quarters;
using PhotoSources::ImageDecoder::decode;
using SampleFiles::Bytes;

/// A white quarter keeps the developer from brightening the picture.
const Quarters colours{{200, 40, 40}, {40, 170, 60}, {50, 60, 200}, {255, 255, 255}};

/// One directory of a little-endian TIFF; values longer than four bytes follow the directory.
class Directory {
public:
    void add(std::uint16_t tag, std::uint16_t type, std::uint32_t count, Bytes value) {
        m_entries[tag] = {type, count, std::move(value)};
    }
    void addShort(std::uint16_t tag, std::uint16_t value) {
        Bytes bytes;
        add(tag, 3, 1, SampleFiles::appendLittle(bytes, value, 2));
    }
    void addLong(std::uint16_t tag, std::uint64_t value) {
        Bytes bytes;
        add(tag, 4, 1, SampleFiles::appendLittle(bytes, value, 4));
    }
    void addText(std::uint16_t tag, std::string_view text) {
        Bytes bytes = SampleFiles::bytesOf(text);
        bytes.push_back(0);
        const auto count = static_cast<std::uint32_t>(bytes.size());
        add(tag, 2, count, std::move(bytes));
    }
    void addRatios(std::uint16_t tag, std::uint16_t type, const std::vector<double>& values) {
        Bytes bytes;
        for (const double value : values) {
            SampleFiles::appendLittle(bytes, static_cast<std::uint32_t>(std::lround(value * 10000)), 4);
            SampleFiles::appendLittle(bytes, 10000, 4);
        }
        add(tag, type, static_cast<std::uint32_t>(values.size()), std::move(bytes));
    }

    [[nodiscard]] std::uint64_t size() const {
        std::uint64_t size = 2 + 12 * m_entries.size() + 4;
        for (const auto& [tag, entry] : m_entries)
            size += entry.value.size() > 4 ? entry.value.size() + (entry.value.size() & 1) : 0;
        return size;
    }
    [[nodiscard]] Bytes written(std::uint64_t offset) const {
        Bytes bytes, values;
        const std::uint64_t valuesAt = offset + 2 + 12 * m_entries.size() + 4;
        SampleFiles::appendLittle(bytes, m_entries.size(), 2);
        for (const auto& [tag, entry] : m_entries) {
            SampleFiles::appendLittle(bytes, tag, 2);
            SampleFiles::appendLittle(bytes, entry.type, 2);
            SampleFiles::appendLittle(bytes, entry.count, 4);
            Bytes field = entry.value;
            if (field.size() > 4) {
                SampleFiles::appendLittle(bytes, valuesAt + values.size(), 4);
                SampleFiles::append(values, field);
                if (values.size() & 1)
                    values.push_back(0);
            } else {
                field.resize(4);
                SampleFiles::append(bytes, field);
            }
        }
        SampleFiles::appendLittle(bytes, 0, 4);
        return SampleFiles::append(bytes, values);
    }

private:
    struct Entry {
        std::uint16_t type = 0;
        std::uint32_t count = 0;
        Bytes value;
    };
    std::map<std::uint16_t, Entry> m_entries;
};

/// What a sensor under red, green, green and blue filters records, in linear light.
Bytes sensorSamples(int width, int height) {
    Bytes samples;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool right = x >= width / 2, bottom = y >= height / 2;
            const Painting::Rgb colour = bottom ? (right ? colours.bottomRight : colours.bottomLeft)
                                                : (right ? colours.topRight : colours.topLeft);
            const int value =
                y % 2 == 0 ? (x % 2 == 0 ? colour.r : colour.g) : (x % 2 == 0 ? colour.g : colour.b);
            const double sample = value / 255.0;
            const double light = sample <= 0.04045 ? sample / 12.92 : std::pow((sample + 0.055) / 1.055, 2.4);
            SampleFiles::appendLittle(samples, static_cast<std::uint64_t>(std::lround(light * 65535)), 2);
        }
    }
    return samples;
}

struct Raw {
    int width = 320;
    int height = 240;
    int orientation = 1;
    /// A JPEG for the first directory; the sensor's data then stand in a sub-directory, as most cameras write
    /// them.
    Bytes preview;
    int previewWidth = 0;
    int previewHeight = 0;
    /// How much of the sensor's data there is.
    double share = 1;
};

Bytes dng(const Raw& raw) {
    const Bytes samples = sensorSamples(raw.width, raw.height);
    const auto describe = [&](Directory& directory) {
        directory.addText(271, "Painting");
        directory.addText(272, "Box camera");
        directory.addShort(274, static_cast<std::uint16_t>(raw.orientation));
        directory.add(50706, 1, 4, {1, 4, 0, 0});
        directory.addText(50708, "Painting Box camera");
        // From XYZ to the sensor, which sees as sRGB does.
        directory.addRatios(50721, 10,
                            {3.2406, -1.5372, -0.4986, -0.9689, 1.8758, 0.0415, 0.0557, -0.2040, 1.0570});
        directory.addRatios(50728, 5, {1, 1, 1});
        directory.addShort(50778, 21);
    };
    const auto describeSensor = [&](Directory& directory, std::uint64_t dataAt) {
        directory.addLong(254, 0);
        directory.addLong(256, static_cast<std::uint64_t>(raw.width));
        directory.addLong(257, static_cast<std::uint64_t>(raw.height));
        directory.addShort(258, 16);
        directory.addShort(259, 1);
        directory.addShort(262, 32803);
        directory.addLong(273, dataAt);
        directory.addShort(277, 1);
        directory.addLong(278, static_cast<std::uint64_t>(raw.height));
        directory.addLong(279, samples.size());
        directory.addShort(284, 1);
        directory.add(33421, 3, 2, {2, 0, 2, 0});
        directory.add(33422, 1, 4, {0, 1, 1, 2});
        directory.addLong(50717, 65535);
    };
    const auto describePreview = [&](Directory& directory, std::uint64_t dataAt, std::uint64_t subDirectory) {
        directory.addLong(254, 1);
        directory.addLong(256, static_cast<std::uint64_t>(raw.previewWidth));
        directory.addLong(257, static_cast<std::uint64_t>(raw.previewHeight));
        directory.add(258, 3, 3, {8, 0, 8, 0, 8, 0});
        directory.addShort(259, 7);
        directory.addShort(262, 6);
        directory.addLong(273, dataAt);
        directory.addShort(277, 3);
        directory.addLong(278, static_cast<std::uint64_t>(raw.previewHeight));
        directory.addLong(279, raw.preview.size());
        directory.addLong(330, subDirectory);
    };
    const bool hasPreview = !raw.preview.empty();
    Directory first, second;
    describe(first);
    // Twice: the first round tells the sizes.
    std::uint64_t secondAt = 8, previewAt = 8, samplesAt = 8;
    for (int round = 0; round < 2; ++round) {
        if (hasPreview) {
            describePreview(first, previewAt, secondAt);
            describeSensor(second, samplesAt);
        } else {
            describeSensor(first, samplesAt);
        }
        secondAt = 8 + first.size();
        previewAt = secondAt + (hasPreview ? second.size() : 0);
        samplesAt = previewAt + raw.preview.size() + (raw.preview.size() & 1);
    }
    Bytes file =
        SampleFiles::joined(SampleFiles::bytesOf(std::string_view("II*\0\x08\0\0\0", 8)), first.written(8));
    if (hasPreview)
        SampleFiles::append(file, second.written(secondAt));
    SampleFiles::append(file, raw.preview);
    file.resize(samplesAt);
    SampleFiles::append(file, samples);
    file.resize(samplesAt + static_cast<std::size_t>(raw.share * static_cast<double>(samples.size())));
    return file;
}

class ImageRawTest : public testing::Test {
protected:
    [[nodiscard]] Bytes jpeg(int width, int height, const Quarters& painted) const {
        const auto file =
            Painting::quarters(width, height, painted).save(m_folder.path() / "preview.jpg[Q=95]");
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    TemporaryFolder m_folder;
};

TEST_F(ImageRawTest, DevelopsTheSensorsData) {
    const auto image = decode(m_folder.write("a.dng", dng({})), 1000);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 320);
    EXPECT_EQ(image->height, 240);
    EXPECT_EQ(Painting::difference(image, colours, 12), "");
}

TEST_F(ImageRawTest, DevelopsAtReducedSizeWhereTheBoundAllows) {
    const auto image = decode(m_folder.write("a.dng", dng({})), 100);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 100);
    EXPECT_EQ(image->height, 75);
    EXPECT_EQ(Painting::difference(image, colours, 12), "");
}

TEST_F(ImageRawTest, TurnsThePictureUpright) {
    Raw raw;
    raw.orientation = 6;
    auto image = decode(m_folder.write("a.dng", dng(raw)), 1000);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 240);
    EXPECT_EQ(Painting::difference(
                  image, {colours.bottomLeft, colours.topLeft, colours.bottomRight, colours.topRight}, 12),
              "");
    raw.orientation = 3;
    image = decode(m_folder.write("a.dng", dng(raw)), 100);
    EXPECT_EQ(Painting::difference(
                  image, {colours.bottomRight, colours.bottomLeft, colours.topRight, colours.topLeft}, 12),
              "");
    raw.orientation = 8;
    image = decode(m_folder.write("a.dng", dng(raw)), 100);
    EXPECT_EQ(Painting::difference(
                  image, {colours.topRight, colours.bottomRight, colours.topLeft, colours.bottomLeft}, 12),
              "");
}

TEST_F(ImageRawTest, IsNotTakenForTheTiffWithAPreviewThatItIsBuiltLike) {
    Raw raw;
    const Painting::Rgb grey{90, 90, 90};
    raw.preview = jpeg(160, 120, {grey, grey, grey, grey});
    raw.previewWidth = 160;
    raw.previewHeight = 120;
    // By content: the name says TIFF.
    for (const char* name : {"a.nef", "a.dng", "a.tif"}) {
        const auto image = decode(m_folder.write(name, dng(raw)), 1000);
        ASSERT_TRUE(image) << name;
        EXPECT_EQ(image->width, 320) << name;
        EXPECT_EQ(Painting::difference(image, colours, 12), "") << name;
    }
}

TEST_F(ImageRawTest, ShowsThePreviewWhereTheSensorsDataAreCutShort) {
    Raw raw;
    raw.preview = jpeg(240, 180, {});
    raw.previewWidth = 240;
    raw.previewHeight = 180;
    raw.orientation = 6;
    for (const double share : {0.0, 0.4}) {
        raw.share = share;
        const auto image = decode(m_folder.write("a.dng", dng(raw)), 1000);
        ASSERT_TRUE(image) << share;
        EXPECT_EQ(image->width, 180);
        EXPECT_EQ(image->height, 240);
        const Quarters q;
        EXPECT_EQ(Painting::difference(image, {q.bottomLeft, q.topLeft, q.bottomRight, q.topRight}, 6), "")
            << share;
    }
}

TEST_F(ImageRawTest, WithoutSensorsDataAndPreviewThereIsNothing) {
    Raw raw;
    raw.share = 0;
    EXPECT_FALSE(decode(m_folder.write("a.dng", dng(raw)), 1000));
    Bytes bytes = dng({});
    bytes.resize(60);
    EXPECT_FALSE(decode(m_folder.write("a.dng", bytes), 1000));
}

TEST_F(ImageRawTest, AnOrdinaryTiffStaysOneWhateverItsName) {
    const auto file = Painting::quarters(80, 60).save(m_folder.path() / "a.tif");
    std::filesystem::rename(file, m_folder.path() / "a.cr2");
    EXPECT_EQ(Painting::difference(decode(m_folder.path() / "a.cr2", 1000)), "");
}

} // namespace
