#include <PhotoSources/JpegHeader.h>
#include <PhotoSources/StandardErrorFilter.h>
#include <PhotoSources/VipsPicture.h>

#include <unistd.h>
#include <vips/vips.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>
#include <string_view>

namespace PhotoSources::VipsPicture {

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

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using Picture = std::unique_ptr<VipsImage, Unref>;
using Source = std::unique_ptr<VipsSource, Unref>;

/// Clears what libvips wrote into its error log, which otherwise grows with every broken photo.
struct ErrorLogCleared {
    ~ErrorLogCleared() { vips_error_clear(); }
};

bool isReady() {
    static std::once_flag once;
    static bool ready = false;
    std::call_once(once, [] {
        // Broken photos are ordinary here; what libvips thinks of them must not reach the terminal.
        g_log_set_handler(
            "VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK & ~G_LOG_LEVEL_ERROR),
            [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
        ready = vips_init("roamly") == 0;
        vips_cache_set_max(0);
        // Photos are decoded side by side, one to a thread.
        vips_concurrency_set(1);
    });
    return ready;
}

/// The result of a libvips operation that writes its output through a pointer.
template <typename Operation>
Picture made(Operation operation) {
    VipsImage* out = nullptr;
    if (operation(&out) != 0)
        return nullptr;
    return Picture(out);
}

struct Size {
    int width = 0;
    int height = 0;

    [[nodiscard]] int longest() const { return std::max(width, height); }
    [[nodiscard]] int shortest() const { return std::min(width, height); }
    [[nodiscard]] std::uint64_t pixels() const {
        return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    }
};

Size sizeOf(const Picture& picture) {
    return {vips_image_get_width(picture.get()), vips_image_get_height(picture.get())};
}

Size fitted(Size full, int maxPixel) {
    const int longest = full.longest();
    if (longest <= maxPixel)
        return full;
    const auto scaled = [&](int length) {
        return std::max(1, static_cast<int>(std::lround(static_cast<double>(length) * maxPixel / longest)));
    };
    return {scaled(full.width), scaled(full.height)};
}

// ----------------------------------------------------------------------------------------------------
// opening

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
class FileSource {
public:
    FileSource(const ImageFile& file, ImageFormat format)
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

// -----------------------------------------------------------------------------------------------------
// colour

bool hasProfile(const Picture& picture) {
    return vips_image_get_typeof(picture.get(), VIPS_META_ICC_NAME) != 0;
}

Picture withProfile(Picture picture, std::span<const std::uint8_t> profile) {
    Picture copy = made([&](VipsImage** out) { return vips_copy(picture.get(), out, nullptr); });
    if (copy)
        vips_image_set_blob_copy(copy.get(), VIPS_META_ICC_NAME, profile.data(), profile.size());
    return copy;
}

/// Cameras set to Adobe RGB say so in EXIF, by the interoperability index R03; most embed no profile.
bool saysAdobeRgb(const Picture& picture) {
    const auto field = [&](const char* name) -> std::string_view {
        const char* text = nullptr;
        if (vips_image_get_typeof(picture.get(), name) == 0 ||
            vips_image_get_string(picture.get(), name, &text) != 0 || !text)
            return {};
        return text;
    };
    const std::string_view space = field("exif-ifd2-ColorSpace");
    return space.starts_with("2 ") ||
           (space.starts_with("65535 ") && field("exif-ifd4-InteroperabilityIndex").starts_with("R03"));
}

/// Alpha laid over black, and exactly the bands that the colour space has.
Picture opaque(Picture picture) {
    if (vips_image_hasalpha(picture.get())) {
        const VipsBandFormat format = vips_image_get_format(picture.get());
        const double maxAlpha = format == VIPS_FORMAT_UCHAR ? 255 : format == VIPS_FORMAT_USHORT ? 65535 : 1;
        picture = made([&](VipsImage** out) {
            return vips_flatten(picture.get(), out, "max_alpha", maxAlpha, nullptr);
        });
        if (!picture)
            return nullptr;
    }
    int wanted = 3;
    switch (vips_image_guess_interpretation(picture.get())) {
    case VIPS_INTERPRETATION_B_W:
    case VIPS_INTERPRETATION_GREY16:
        wanted = 1;
        break;
    case VIPS_INTERPRETATION_CMYK:
        wanted = 4;
        break;
    default:
        break;
    }
    const int bands = vips_image_get_bands(picture.get());
    if (bands > wanted)
        return made(
            [&](VipsImage** out) { return vips_extract_band(picture.get(), out, 0, "n", wanted, nullptr); });
    return picture;
}

/// A copy: a loader may replace its picture's metadata once pixels are asked for.
ColourProfile::Bytes profileOf(const Picture& picture) {
    const void* bytes = nullptr;
    std::size_t size = 0;
    if (!hasProfile(picture) || vips_image_get_blob(picture.get(), VIPS_META_ICC_NAME, &bytes, &size) != 0)
        return {};
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    return {first, first + size};
}

/// What libvips makes of colours that come without a usable profile.
Picture withoutProfileInSrgb(const Picture& picture) {
    Picture converted = made([&](VipsImage** out) {
        return vips_colourspace(picture.get(), out, VIPS_INTERPRETATION_sRGB, nullptr);
    });
    if (converted && vips_image_get_format(converted.get()) != VIPS_FORMAT_UCHAR)
        return made([&](VipsImage** out) { return vips_cast_uchar(converted.get(), out, nullptr); });
    return converted;
}

// ---------------------------------------------------------------------------------------------------- pixels

std::optional<std::vector<std::uint8_t>> computed(const Picture& picture) {
    std::size_t count = 0;
    const std::unique_ptr<void, decltype(&g_free)> memory(vips_image_write_to_memory(picture.get(), &count),
                                                          &g_free);
    if (!memory)
        return std::nullopt;
    const auto* bytes = static_cast<const std::uint8_t*>(memory.get());
    return std::vector<std::uint8_t>(bytes, bytes + count);
}

/// The pixels of a picture whose colours no profile explains.
std::optional<Foundation::Image> untagged(const Picture& picture) {
    const Picture converted = withoutProfileInSrgb(picture);
    if (!converted || vips_image_get_bands(converted.get()) != 3)
        return std::nullopt;
    std::optional<std::vector<std::uint8_t>> pixels = computed(converted);
    if (!pixels)
        return std::nullopt;
    const Size size = sizeOf(converted);
    return Foundation::Image{size.width, size.height, std::move(*pixels)};
}

std::optional<Foundation::Image> rendered(Picture picture, Size target) {
    picture = opaque(std::move(picture));
    if (!picture)
        return std::nullopt;
    const Size size = sizeOf(picture);
    if (size.width != target.width || size.height != target.height) {
        picture = made([&](VipsImage** out) {
            return vips_resize(picture.get(), out, static_cast<double>(target.width) / size.width, "vscale",
                               static_cast<double>(target.height) / size.height, nullptr);
        });
        if (!picture)
            return std::nullopt;
    }

    // Colours are converted last, when there are the fewest pixels.
    const VipsBandFormat format = vips_image_get_format(picture.get());
    const bool canUseProfile = format == VIPS_FORMAT_UCHAR || format == VIPS_FORMAT_USHORT;
    const Size result = sizeOf(picture);
    if (const ColourProfile::Bytes profile = profileOf(picture); canUseProfile && !profile.empty()) {
        const std::optional<std::vector<std::uint8_t>> samples = computed(picture);
        if (!samples)
            return std::nullopt;
        const int bands = vips_image_get_bands(picture.get());
        if (std::optional<std::vector<std::uint8_t>> pixels =
                ColourProfile::toSrgb(profile, bands, format == VIPS_FORMAT_UCHAR ? 8 : 16, *samples))
            return Foundation::Image{result.width, result.height, std::move(*pixels)};
        // A profile that is broken or not for such samples is as good as none.
        Picture plain(vips_image_new_from_memory(samples->data(), samples->size(), result.width,
                                                 result.height, bands, format));
        if (!plain)
            return std::nullopt;
        plain->Type = vips_image_guess_interpretation(picture.get());
        return untagged(plain);
    }
    return untagged(picture);
}

/// Whether enough of a damaged picture came out to be worth showing. Decoders fill what is missing, at the
/// end, with one colour.
bool isWorthShowing(const Foundation::Image& image) {
    constexpr double leastShare = 0.25;
    constexpr int tolerance = 3;
    const std::uint8_t* fill = image.row(image.height - 1);
    const auto isFilled = [&](int y) {
        const std::uint8_t* row = image.row(y);
        for (int i = 0; i < image.width * 3; ++i) {
            if (std::abs(row[i] - fill[i % 3]) > tolerance)
                return false;
        }
        return true;
    };
    int end = image.height;
    while (end > 0 && isFilled(end - 1))
        --end;
    return end >= leastShare * image.height;
}

} // namespace

std::optional<Foundation::Image> decode(const ImageFile& file, ImageFormat format, int maxPixel,
                                        const std::optional<ColourCoding>& untaggedCoding) {
    if (!isReady())
        return std::nullopt;
    const ErrorLogCleared cleared;
    std::optional<StandardErrorFilter> quiet;
    if (format == ImageFormat::jpegXL)
        quiet.emplace("./lib/jxl/"); // Debian builds libjxl to print where it fails
    const FileSource source(file, format);

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
                picture = withProfile(std::move(picture), *profile);
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
    if (!isReady() || jpeg.empty())
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
    if (!isReady())
        return std::nullopt;
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
        picture = withProfile(std::move(picture), samples.iccProfile);
    if (!picture)
        return std::nullopt;
    std::optional<Foundation::Image> image =
        rendered(std::move(picture), fitted({fullWidth, fullHeight}, maxPixel));
    if (!image)
        return std::nullopt;
    return turned(std::move(*image), orientation);
}

} // namespace PhotoSources::VipsPicture
