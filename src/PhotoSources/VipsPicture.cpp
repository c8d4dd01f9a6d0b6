// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/JpegHeader.h>
#include <PhotoSources/VipsPicture.h>
#include <PhotoSources/VipsRendering.h>

#include <unistd.h>
#include <vips/vips.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <string_view>

namespace PhotoSources::VipsPicture {

using namespace VipsHandle;
using namespace VipsRendering;

namespace {

// What may be decoded. The sizes leave room above what photographs have; a picture at its limit takes up to
// about 0.4 GB, and on an idle machine no more than a few seconds.

/// JPEG decodes at an eighth of its size row by row, so only time limits it.
constexpr std::uint64_t mostJpegPixels = 400'000'000;
/// A progressive JPEG keeps two bytes for every coefficient until its last scan.
constexpr std::uint64_t mostProgressiveCoefficients = 200'000'000;
/// Each scan of a progressive JPEG visits all of the picture; real ones have about ten.
constexpr std::uint64_t mostScannedCoefficients = 6'000'000'000;
/// Formats that are read row by row.
constexpr std::uint64_t mostStreamedPixels = 210'000'000;
/// Formats that are decoded as a whole before the first row comes out.
constexpr std::uint64_t mostWholePixels = 70'000'000;
/// Files of formats that are held in memory while they are decoded.
constexpr std::uint64_t mostBytesInMemory = 256U << 20;

Size fitted(Size full, int maxPixel) {
    const int longest = full.longest();
    if (longest <= maxPixel)
        return full;
    const auto scaled = [&](int length) {
        return std::max(1, static_cast<int>(std::lround(static_cast<double>(length) * maxPixel / longest)));
    };
    return {scaled(full.width), scaled(full.height)};
}

enum class Damage { refuse, tolerate };

struct Opening {
    ImageFormat format = ImageFormat::unknown;
    Damage damage = Damage::refuse;
    int jpegShrink = 1;
    double webpScale = 1;
};

/// Names the loader instead of letting libvips look for one: what is not a photo format is never tried.
Picture opened(const Source& source, const Opening& how) {
    if (!source)
        return nullptr;
    const VipsFailOn failOn = how.damage == Damage::refuse ? VIPS_FAIL_ON_TRUNCATED : VIPS_FAIL_ON_NONE;
    const auto load = [&](auto loader, auto... options) {
        return made([&](VipsImage** out) {
            return loader(source.get(), out, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on", failOn, options...,
                          nullptr);
        });
    };
    switch (how.format) {
    case ImageFormat::jpeg:
        return load(vips_jpegload_source, "shrink", how.jpegShrink);
    case ImageFormat::png:
        return load(vips_pngload_source);
    case ImageFormat::gif:
        return load(vips_gifload_source);
    case ImageFormat::webp:
        return load(vips_webpload_source, "scale", how.webpScale);
    case ImageFormat::tiff:
        return load(vips_tiffload_source);
    case ImageFormat::jpegXL:
        return load(vips_jxlload_source);
    case ImageFormat::jpeg2000:
        return load(vips_jp2kload_source);
    case ImageFormat::heif:
        return load(vips_heifload_source);
    case ImageFormat::unknown:
    case ImageFormat::cameraRaw:
        break;
    }
    return nullptr;
}

/// A file as libvips reads it: from the descriptor, or from memory for the loaders that would map the file
/// and die with it if it shrank.
class VipsInput {
public:
    VipsInput(const ImageFile& file, ImageFormat format)
        : m_file(file) {
        if (format == ImageFormat::gif || format == ImageFormat::webp) {
            m_bytes = file.readAll(mostBytesInMemory);
            m_inMemory = true;
        }
    }

    [[nodiscard]] Source make() const {
        if (m_inMemory) {
            return Source(m_bytes ? vips_source_new_from_memory(m_bytes->data(), m_bytes->size()) : nullptr);
        }
        ::lseek(m_file.descriptor(), 0, SEEK_SET);
        return Source(vips_source_new_from_descriptor(m_file.descriptor()));
    }

private:
    const ImageFile& m_file;
    std::optional<std::vector<std::uint8_t>> m_bytes;
    bool m_inMemory = false;
};

bool isInterlacedPng(const ImageFile& file) {
    std::array<std::uint8_t, 1> method{};
    return file.readAt(28, method) == 1 && method[0] != 0;
}

bool isAffordable(const ImageFile& file, ImageFormat format, Size size) {
    switch (format) {
    case ImageFormat::jpeg: {
        if (size.pixels() > mostJpegPixels)
            return false;
        const std::optional<JpegHeader> header = JpegHeader::read(file);
        if (!header || !header->progressive)
            return true;
        if (header->coefficients > mostProgressiveCoefficients)
            return false;
        const auto mostScans = static_cast<int>(std::min<std::uint64_t>(
            1000, mostScannedCoefficients / std::max<std::uint64_t>(1, header->coefficients)));
        return countJpegScans(file, mostScans) < mostScans;
    }
    case ImageFormat::png:
        return size.pixels() <= (isInterlacedPng(file) ? mostWholePixels : mostStreamedPixels);
    case ImageFormat::tiff:
        return size.pixels() <= mostStreamedPixels;
    default:
        return size.pixels() <= mostWholePixels;
    }
}

/// Leaves a factor of one and a half to the resampler, whose filter is the better one, and a pixel of the
/// short side. JPEG's own reduction keeps the low frequencies of each block: with that much room the result
/// differs from one made of all pixels by half a level in 255.
int jpegShrinkFor(Size size, int maxPixel) {
    for (const int shrink : {8, 4, 2}) {
        if (size.longest() * 2LL >= 3LL * shrink * maxPixel && size.shortest() >= shrink)
            return shrink;
    }
    return 1;
}

} // namespace

std::optional<Foundation::Image> decode(const ImageFile& file, ImageFormat format, int maxPixel,
                                        const std::optional<ColourCoding>& untaggedCoding) {
    const ErrorLogCleared cleared;
    const VipsInput source(file, format);

    const auto attempt = [&](Damage damage) -> std::optional<Foundation::Image> {
        Opening how{format, damage};
        Picture picture = opened(source.make(), how);
        if (!picture)
            return std::nullopt;
        const Size full = sizeOf(picture);
        if (!isAffordable(file, format, full))
            return std::nullopt;
        // libheif has turned the picture already; whatever EXIF says was said to others.
        const Orientation orientation =
            format == ImageFormat::heif ? Orientation{}
                                        : Orientation::fromExif(vips_image_get_orientation(picture.get()));
        const Size target = fitted(full, maxPixel);
        how.jpegShrink = jpegShrinkFor(full, maxPixel);
        if (format == ImageFormat::webp && full.longest() >= 4 * target.longest())
            how.webpScale = std::max(2.0 * target.longest() / full.longest(), 1.0 / full.shortest());
        if ((format == ImageFormat::jpeg && how.jpegShrink > 1) || how.webpScale < 1)
            picture = opened(source.make(), how);
        if (!picture)
            return std::nullopt;
        if (!hasProfile(picture)) {
            std::optional<ColourProfile::Bytes> profile;
            if (untaggedCoding)
                profile = ColourProfile::forCoding(*untaggedCoding);
            else if (saysAdobeRgb(picture))
                profile = ColourProfile::adobeRgb();
            if (profile)
                picture = withProfile(picture, *profile);
            if (!picture)
                return std::nullopt;
        }
        std::optional<Foundation::Image> image = rendered(std::move(picture), target);
        if (!image || (damage == Damage::tolerate && !isWorthShowing(*image)))
            return std::nullopt;
        return turned(std::move(*image), orientation);
    };

    if (std::optional<Foundation::Image> image = attempt(Damage::refuse))
        return image;
    return attempt(Damage::tolerate);
}

std::optional<Foundation::Image> decodePreview(std::span<const std::uint8_t> jpeg, int maxPixel,
                                               const Orientation& orientation, bool sensorIsWide) {
    if (jpeg.empty())
        return std::nullopt;
    const ErrorLogCleared cleared;
    const auto open = [&](int shrink) {
        return opened(Source(vips_source_new_from_memory(jpeg.data(), jpeg.size())),
                      {ImageFormat::jpeg, Damage::refuse, shrink});
    };
    Picture picture = open(1);
    if (!picture || sizeOf(picture).pixels() > mostWholePixels)
        return std::nullopt;
    const Size full = sizeOf(picture);
    Orientation turn = Orientation::fromExif(vips_image_get_orientation(picture.get()));
    // Many a preview says 1 and means nothing by it. One that stands where the sensor lies has been turned.
    const bool isWide = full.width > full.height;
    const bool isTurned = orientation.transpose && full.width != full.height && isWide != sensorIsWide;
    if (turn.isIdentity() && !isTurned)
        turn = orientation;
    if (const int shrink = jpegShrinkFor(full, maxPixel); shrink > 1)
        picture = open(shrink);
    if (!picture)
        return std::nullopt;
    std::optional<Foundation::Image> image = rendered(std::move(picture), fitted(full, maxPixel));
    if (!image)
        return std::nullopt;
    return turned(std::move(*image), turn);
}

std::optional<Foundation::Image> finish(const RgbSamples& samples, int fullWidth, int fullHeight,
                                        const Orientation& orientation, int maxPixel) {
    const ErrorLogCleared cleared;
    const bool wide = samples.bitsPerChannel > 8;
    Picture picture(vips_image_new_from_memory(samples.bytes.data(), samples.bytes.size(), samples.width,
                                               samples.height, 3,
                                               wide ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR));
    if (!picture)
        return std::nullopt;
    picture = made([&](VipsImage** out) {
        return vips_copy(picture.get(), out, "interpretation",
                         wide ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB, nullptr);
    });
    if (picture && !samples.iccProfile.empty())
        picture = withProfile(picture, samples.iccProfile);
    if (!picture)
        return std::nullopt;
    std::optional<Foundation::Image> image =
        rendered(std::move(picture), fitted({fullWidth, fullHeight}, maxPixel));
    if (!image)
        return std::nullopt;
    return turned(std::move(*image), orientation);
}

std::optional<std::string> jpeg(const Foundation::Image& image, int quality) {
    if (image.isEmpty())
        return std::nullopt;
    const ErrorLogCleared cleared;
    const Picture picture{vips_image_new_from_memory(image.pixels.data(), image.pixels.size(), image.width,
                                                     image.height, 3, VIPS_FORMAT_UCHAR)};
    void* buffer = nullptr;
    std::size_t length = 0;
    if (!picture ||
        vips_jpegsave_buffer(picture.get(), &buffer, &length, "Q", quality, "strip", TRUE, nullptr) != 0)
        return std::nullopt;
    const std::unique_ptr<void, decltype(&g_free)> owner{buffer, g_free};
    return std::string{static_cast<const char*>(buffer), length};
}

} // namespace PhotoSources::VipsPicture