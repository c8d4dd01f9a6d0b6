// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/Exiv2Tags.h>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cmath>

namespace PhotoSources {

namespace {

std::optional<std::string> text(const Exiv2::ExifData& data, const char* key) {
    const auto datum = data.findKey(Exiv2::ExifKey(key));
    if (datum == data.end() || datum->typeId() != Exiv2::asciiString)
        return std::nullopt;
    const std::string value = datum->toString();
    return value.substr(0, value.find('\0'));
}

std::optional<double> degrees(const Exiv2::ExifData& data, const char* key) {
    const auto datum = data.findKey(Exiv2::ExifKey(key));
    if (datum == data.end() || datum->count() == 0 ||
        (datum->typeId() != Exiv2::unsignedRational && datum->typeId() != Exiv2::signedRational))
        return std::nullopt;
    double sum = 0;
    double unit = 1;
    for (int i = 0; i < std::min(static_cast<int>(datum->count()), 3); ++i, unit *= 60) {
        double numerator = 0;
        double denominator = 0;
        if (const auto* exact = dynamic_cast<const Exiv2::URationalValue*>(&datum->value())) {
            numerator = exact->value_[static_cast<std::size_t>(i)].first;
            denominator = exact->value_[static_cast<std::size_t>(i)].second;
        } else if (const auto* exactSigned = dynamic_cast<const Exiv2::RationalValue*>(&datum->value())) {
            numerator = exactSigned->value_[static_cast<std::size_t>(i)].first;
            denominator = exactSigned->value_[static_cast<std::size_t>(i)].second;
        }
        if (denominator == 0)
            return std::nullopt;
        sum += numerator / denominator / unit;
    }
    return std::fabs(sum);
}

} // namespace

ExifTags readExiv2Tags(const std::filesystem::path& file) {
    ExifTags tags;
    try {
        // Absolute, since the library takes "-" and addresses for something other than files.
        const auto image = Exiv2::ImageFactory::open(std::filesystem::absolute(file).string());
        image->readMetadata();
        const Exiv2::ExifData& data = image->exifData();
        tags.dateTimeOriginal = text(data, "Exif.Photo.DateTimeOriginal");
        tags.offsetTimeOriginal = text(data, "Exif.Photo.OffsetTimeOriginal");
        tags.latitude = degrees(data, "Exif.GPSInfo.GPSLatitude");
        tags.longitude = degrees(data, "Exif.GPSInfo.GPSLongitude");
        tags.latitudeRef = text(data, "Exif.GPSInfo.GPSLatitudeRef");
        tags.longitudeRef = text(data, "Exif.GPSInfo.GPSLongitudeRef");
    } catch (const std::exception&) {
        // Unknown and broken files are ordinary here: no tags.
    }
    return tags;
}

} // namespace PhotoSources
