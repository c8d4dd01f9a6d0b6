// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifContainer.h>
#include <PhotoSources/HeifDecoder.h>
#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/ImageFile.h>
#include <PhotoSources/ImageFormat.h>
#include <PhotoSources/RawDecoder.h>
#include <PhotoSources/StandardErrorFilter.h>
#include <PhotoSources/VipsPicture.h>

#include <exception>

namespace PhotoSources::ImageDecoder {

namespace {

std::optional<Foundation::Image> decodeHeif(const ImageFile& file, int maxPixel) {
    constexpr std::uint64_t mostBytes = 256U << 20;
    const std::optional<std::vector<std::uint8_t>> bytes = file.readAll(mostBytes);
    if (!bytes)
        return std::nullopt;
    // The tiles of an HEVC picture are read here: quicker, in less memory, and without what libheif may
    // object to. The rest is libheif's: AVIF, transparency, overlays.
    const std::optional<HeifPicture> picture = HeifContainer::readHevcPicture(*bytes);
    if (picture && !picture->hasAlpha) {
        if (auto image = HeifDecoder::decode(*picture, maxPixel))
            return image;
    }
    std::optional<StandardErrorFilter> quiet;
    if (picture)
        quiet.emplace(); // what failed above fails again, and libde265 prints why
    const std::optional<ColourCoding> coding = HeifContainer::readUntaggedCoding(*bytes);
    if (auto image = VipsPicture::decode(file, ImageFormat::heif, maxPixel, coding))
        return image;
    return picture && picture->hasAlpha ? HeifDecoder::decode(*picture, maxPixel) : std::nullopt;
}

std::optional<Foundation::Image> decodeOpened(const ImageFile& file, int maxPixel) {
    const ImageFormat format = imageFormatOf(file);
    switch (format) {
    case ImageFormat::unknown:
        return std::nullopt;
    case ImageFormat::cameraRaw:
        if (auto image = RawDecoder::decode(file, maxPixel))
            return image;
        return isPlainTiff(file) ? VipsPicture::decode(file, ImageFormat::tiff, maxPixel) : std::nullopt;
    case ImageFormat::heif:
        return decodeHeif(file, maxPixel);
    case ImageFormat::jpegXL: {
        const StandardErrorFilter quiet; // Debian builds libjxl to print where it fails
        return VipsPicture::decode(file, format, maxPixel);
    }
    default:
        return VipsPicture::decode(file, format, maxPixel);
    }
}

} // namespace

std::optional<Foundation::Image> decode(const std::filesystem::path& path, int maxPixel) {
    if (maxPixel < 1)
        return std::nullopt;
    try {
        const std::optional<ImageFile> file = ImageFile::open(path);
        if (!file)
            return std::nullopt;
        return decodeOpened(*file, maxPixel);
    } catch (const std::exception&) {
        // Out of memory, most likely: a picture that cannot be decoded like any other.
        return std::nullopt;
    }
}

} // namespace PhotoSources::ImageDecoder
