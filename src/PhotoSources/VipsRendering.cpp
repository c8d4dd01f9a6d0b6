// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/VipsRendering.h>

#include <cstdlib>
#include <string_view>
#include <vector>

namespace PhotoSources::VipsRendering {

using VipsHandle::made;
using VipsHandle::Picture;
using VipsHandle::Size;
using VipsHandle::sizeOf;

namespace {

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

} // namespace

bool hasProfile(const Picture& picture) {
    return vips_image_get_typeof(picture.get(), VIPS_META_ICC_NAME) != 0;
}

Picture withProfile(const Picture& picture, std::span<const std::uint8_t> profile) {
    Picture copy = made([&](VipsImage** out) { return vips_copy(picture.get(), out, nullptr); });
    if (copy)
        vips_image_set_blob_copy(copy.get(), VIPS_META_ICC_NAME, profile.data(), profile.size());
    return copy;
}

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

} // namespace PhotoSources::VipsRendering
