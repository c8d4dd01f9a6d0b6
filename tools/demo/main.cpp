// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// make-demo-trip OUTDIR: writes the photos, the music and demo.tsv of the sample trip.

#include "Brushes.h"
#include "Music.h"
#include "Scenes.h"

#include <exiv2/exiv2.hpp>

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace DemoTrip;

struct Position {
    double latitude;
    double longitude;
};

struct Photo {
    std::string file;
    std::function<QImage()> paint;
    /// As EXIF has it, in the time zone of `offset`.
    std::string taken;
    std::optional<Position> position;
    std::string city;
    std::string title;
    /// The picture is stored lying on its side, and this tag says so.
    int orientation = 1;
    bool isTruncated = false;
};

constexpr const char* offset = "+01:00";
constexpr const char* country = "Portugal";

constexpr Position alfama{38.71152, -9.13008};
constexpr Position graca{38.71647, -9.13150};
constexpr Position belem{38.69752, -9.20322};
constexpr Position alcantara{38.69930, -9.17880};
constexpr Position pena{38.78757, -9.39064};
constexpr Position ribeira{41.14058, -8.61310};
constexpr Position foz{41.15190, -8.67930};
constexpr Position gaia{41.13830, -8.60900};
constexpr Position pinhao{41.19020, -7.54660};
constexpr Position cape{38.78040, -9.49890};

std::vector<Photo> trip() {
    return {
        {"IMG_2001.jpg", Scenes::rooftops, "2025:05:16 17:52:08", graca, "Lisbon",
         "The first evening, above the roofs", 1, false},
        {"IMG_2004.jpg", Scenes::tramStreet, "2025:05:17 10:14:41", alfama, "Lisbon",
         "Number 28, squealing round the corner", 1, false},
        {"IMG_2006.jpg", Scenes::cafe, "2025:05:17 11:03:22", belem, "Lisbon",
         "Pastéis de nata, still warm ☕", 1, false},
        {"IMG_2010.jpg", Scenes::bridge, "2025:05:17 20:21:37", alcantara, "Lisbon", "", 1, false},
        {"IMG_2011.jpg", [] { return Scenes::sunset(0); }, "2025:05:17 20:38:02", belem, "Lisbon", "", 1,
         false},
        {"IMG_2012.jpg", [] { return blurred(Scenes::sunset(0.5), 5); }, "2025:05:17 20:38:04", belem,
         "Lisbon", "", 1, false},
        {"IMG_2013.jpg", [] { return Scenes::sunset(1); }, "2025:05:17 20:38:07", belem, "Lisbon",
         "The sun goes down behind the Tagus", 1, false},
        {"IMG_2017.jpg", Scenes::palace, "2025:05:18 10:47:55", pena, "Sintra",
         "A palace out of a picture book", 1, false},
        {"IMG_2019.jpg", Scenes::forest, "2025:05:18 12:26:13", std::nullopt, "Sintra",
         "Down through the old park", 1, false},
        {"IMG_2022.jpg", Scenes::lighthouse, "2025:05:18 16:09:30", cape, "Sintra",
         "Where the land ends and the sea begins", 6, false},
        {"IMG_2025.jpg", Scenes::riverside, "2025:05:19 12:35:18", ribeira, "Porto", "Lunch by the river", 1,
         false},
        {"IMG_2028.jpg", Scenes::beach, "2025:05:19 16:40:51", foz, "Porto", "Feet in the Atlantic. Cold!", 1,
         false},
        {"IMG_2029.jpg", Scenes::beach, "2025:05:19 16:41:20", foz, "", "", 1, true},
        {"IMG_2031.jpg", Scenes::nightSkyline, "2025:05:19 21:58:44", gaia, "Porto", "Lights on the Douro", 1,
         false},
        {"IMG_2034.jpg", Scenes::vineyards, "2025:05:20 15:17:09", pinhao, "Pinhão",
         "One last glass. Obrigado! 🍇", 1, false},
    };
}

QByteArray jpeg(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.save(&buffer, "JPG", 90))
        throw std::runtime_error("Qt cannot write JPEG files here");
    return bytes;
}

/// Degrees, minutes and hundredths of seconds, as EXIF stores an angle.
std::string exifAngle(double degrees) {
    const auto hundredths = static_cast<long>(std::lround(std::abs(degrees) * 360'000));
    return std::to_string(hundredths / 360'000) + "/1 " + std::to_string(hundredths / 6'000 % 60) + "/1 " +
           std::to_string(hundredths % 6'000) + "/100";
}

void describe(Exiv2::ExifData& exif, const Photo& photo, QSize size) {
    exif["Exif.Image.Make"] = "Roamly";
    exif["Exif.Image.Model"] = "Paintbrush";
    exif["Exif.Image.Orientation"] = static_cast<std::uint16_t>(photo.orientation);
    exif["Exif.Image.DateTime"] = photo.taken;
    exif["Exif.Photo.DateTimeOriginal"] = photo.taken;
    exif["Exif.Photo.DateTimeDigitized"] = photo.taken;
    exif["Exif.Photo.OffsetTimeOriginal"] = offset;
    exif["Exif.Photo.OffsetTimeDigitized"] = offset;
    exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(size.width());
    exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(size.height());
    if (photo.position) {
        exif["Exif.GPSInfo.GPSVersionID"] = "2 3 0 0";
        exif["Exif.GPSInfo.GPSLatitudeRef"] = photo.position->latitude < 0 ? "S" : "N";
        exif["Exif.GPSInfo.GPSLatitude"] = exifAngle(photo.position->latitude);
        exif["Exif.GPSInfo.GPSLongitudeRef"] = photo.position->longitude < 0 ? "W" : "E";
        exif["Exif.GPSInfo.GPSLongitude"] = exifAngle(photo.position->longitude);
    }
}

void write(const std::filesystem::path& path, const char* data, std::size_t size) {
    std::ofstream file(path, std::ios::binary);
    file.write(data, static_cast<std::streamsize>(size));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

void writePhoto(const Photo& photo, const std::filesystem::path& folder) {
    QImage picture = photo.paint();
    if (photo.orientation == 6) // To be turned clockwise when shown.
        picture = picture.transformed(QTransform().rotate(-90));
    const QByteArray bytes = jpeg(picture);
    const auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.constData()),
                                                 static_cast<std::size_t>(bytes.size()));
    image->readMetadata();
    describe(image->exifData(), photo, picture.size());
    image->writeMetadata();

    Exiv2::BasicIo& io = image->io();
    std::vector<Exiv2::byte> tagged(static_cast<std::size_t>(io.size()));
    io.open();
    io.seek(0, Exiv2::BasicIo::beg);
    tagged.resize(static_cast<std::size_t>(io.read(tagged.data(), static_cast<long>(tagged.size()))));
    if (photo.isTruncated) {
        // What a card leaves that was pulled out too early: everything up to the first line of the picture.
        constexpr std::array<Exiv2::byte, 2> startOfScan{0xFF, 0xDA};
        tagged.erase(std::search(tagged.begin(), tagged.end(), startOfScan.begin(), startOfScan.end()),
                     tagged.end());
    }
    write(folder / photo.file, reinterpret_cast<const char*>(tagged.data()), tagged.size());
}

/// Tab-separated: file, city, country, title. What `roamly place` and `roamly title` are to be told.
std::string manifest(const std::vector<Photo>& photos) {
    std::string text;
    for (const Photo& photo : photos) {
        if (!photo.city.empty())
            text += photo.file + '\t' + photo.city + '\t' + country + '\t' + photo.title + '\n';
    }
    return text;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-demo-trip OUTDIR\n");
        return 2;
    }
    const QCoreApplication application(argc, argv); // Qt finds its JPEG writer through it.
    try {
        const std::filesystem::path folder = argv[1];
        std::filesystem::create_directories(folder);
        const std::vector<Photo> photos = trip();
        for (const Photo& photo : photos)
            writePhoto(photo, folder);
        const QByteArray sound = music();
        write(folder / "music.wav", sound.constData(), static_cast<std::size_t>(sound.size()));
        const std::string text = manifest(photos);
        write(folder / "demo.tsv", text.data(), text.size());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make-demo-trip: %s\n", error.what());
        return 1;
    }
    return 0;
}
