// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/AppImageProvider.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

using Foundation::Image;
using Platform::AppImageProvider;
using ProjectModel::FilePhotoRef;
using ProjectModel::LibraryPhotoRef;

class AppImageProviderTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path path(const char* name) const { return m_folder / name; }

    static void write(const std::filesystem::path& file, const QByteArray& bytes) {
        std::ofstream(file, std::ios::binary).write(bytes.constData(), bytes.size());
    }

    /// The left half red, the right half blue.
    static QByteArray twoHalves(int width, int height, const char* format) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QPainter(&image).fillRect(0, 0, width / 2, height, Qt::red);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(image.save(&buffer, format, 95));
        return bytes;
    }

    /// A JPEG with nothing but the orientation in its EXIF block.
    static QByteArray withOrientation(QByteArray jpeg, char orientation) {
        constexpr std::array<char, 36> block{
            '\xFF', '\xE1', 0, 34,   'E', 'x', 'i', 'f', 0, 0, // segment, its length, its name
            'M',    'M',    0, 42,   0,   0,   0,   8,         // big-endian TIFF, first directory at 8
            0,      1,      1, 0x12, 0,   3,   0,   0,   0, 1,
            0,      0,      0, 0,  // one entry: orientation, one short
            0,      0,      0, 0}; // no further directory
        QByteArray segment(block.data(), block.size());
        segment[29] = orientation;
        return jpeg.insert(2, segment);
    }

    static FilePhotoRef pathRef(const std::filesystem::path& file) {
        const std::string text = file.string();
        return {Foundation::Bytes(text.begin(), text.end()), file.filename().string()};
    }

    TemporaryFolder m_folder;
};

std::array<int, 3> pixel(const Image& image, int x, int y) {
    const std::uint8_t* at = image.row(y) + 3 * x;
    return {at[0], at[1], at[2]};
}

TEST_F(AppImageProviderTest, DeliversAFileBoundedToTheGivenSize) {
    write(path("a.png"), twoHalves(400, 200, "PNG"));
    const auto image = AppImageProvider(100).image(pathRef(path("a.png")));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 100);
    EXPECT_EQ(image->height, 50);
}

TEST_F(AppImageProviderTest, DeliversAPortraitWithAnOrientationTagUprightAndBounded) {
    write(path("a.jpg"), withOrientation(twoHalves(400, 200, "JPG"), 6));
    const auto image = AppImageProvider(100).image(pathRef(path("a.jpg")));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 50);
    EXPECT_EQ(image->height, 100);
    EXPECT_GT(pixel(*image, 25, 20)[0], 200) << "what was stored on the left is on top";
    EXPECT_GT(pixel(*image, 25, 80)[2], 200);
}

TEST_F(AppImageProviderTest, FollowsABookmarkToARenamedFile) {
    write(path("a.png"), twoHalves(40, 20, "PNG"));
    const auto bookmark = Foundation::makeBookmark(path("a.png"));
    ASSERT_TRUE(bookmark);
    std::filesystem::rename(path("a.png"), path("b.png"));
    EXPECT_TRUE(AppImageProvider(100).image(FilePhotoRef{*bookmark, "a.png"}));
}

TEST_F(AppImageProviderTest, ABookmarkThatNoLongerResolvesYieldsNothing) {
    write(path("a.png"), twoHalves(40, 20, "PNG"));
    const auto bookmark = Foundation::makeBookmark(path("a.png"));
    ASSERT_TRUE(bookmark);
    std::filesystem::remove(path("a.png"));
    EXPECT_FALSE(AppImageProvider(100).image(FilePhotoRef{*bookmark, "a.png"}));
    EXPECT_FALSE(AppImageProvider(100).image(pathRef(path("a.png"))));
    EXPECT_FALSE(AppImageProvider(100).image(FilePhotoRef{{}, "a.png"}));
    EXPECT_FALSE(AppImageProvider(100).image(FilePhotoRef{{0xFF, 0x00, 0x01}, "a.png"}));
}

TEST_F(AppImageProviderTest, AFileThatIsNoPictureYieldsNothing) {
    write(path("a.jpg"), "not a picture at all");
    write(path("empty.jpg"), "");
    std::filesystem::create_directory(path("folder.jpg"));
    for (const char* name : {"a.jpg", "empty.jpg", "folder.jpg"})
        EXPECT_FALSE(AppImageProvider(100).image(pathRef(path(name)))) << name;
}

TEST_F(AppImageProviderTest, ABoundThatIsNotPositiveYieldsNothing) {
    write(path("a.png"), twoHalves(40, 20, "PNG"));
    EXPECT_FALSE(AppImageProvider(0).image(pathRef(path("a.png"))));
    EXPECT_FALSE(AppImageProvider(-5).image(pathRef(path("a.png"))));
}

TEST_F(AppImageProviderTest, HandsLibraryPhotosToTheLoaderWithTheBound) {
    std::string askedFor;
    int bound = 0;
    const AppImageProvider provider(1024, [&](const std::string& identifier, int maxPixel) {
        askedFor = identifier;
        bound = maxPixel;
        return std::optional(Image{1, 1, {1, 2, 3}});
    });
    EXPECT_EQ(provider.image(LibraryPhotoRef{"shotwell:12"}), (Image{1, 1, {1, 2, 3}}));
    EXPECT_EQ(askedFor, "shotwell:12");
    EXPECT_EQ(bound, 1024);
}

TEST_F(AppImageProviderTest, AnIdentifierThatTheLibraryDoesNotKnowYieldsNothing) {
    const auto unknown = [](const std::string&, int) { return std::optional<Image>(); };
    EXPECT_FALSE(AppImageProvider(100, unknown).image(LibraryPhotoRef{"gone"}));
    const auto empty = [](const std::string&, int) { return std::optional(Image{}); };
    EXPECT_FALSE(AppImageProvider(100, empty).image(LibraryPhotoRef{"empty"}));
    EXPECT_FALSE(AppImageProvider(100).image(LibraryPhotoRef{"no library"}));
}

TEST_F(AppImageProviderTest, ALoaderThatThrowsYieldsNothing) {
    const auto broken = [](const std::string&, int) -> std::optional<Image> {
        throw std::runtime_error("no");
    };
    EXPECT_FALSE(AppImageProvider(100, broken).image(LibraryPhotoRef{"a"}));
}

} // namespace
