// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/Painting.h>

#include <gtest/gtest.h>
#include <vips/vips.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace Painting {

namespace {

[[noreturn]] void fail() {
    std::string message = vips_error_buffer();
    vips_error_clear();
    throw std::runtime_error(message);
}

} // namespace

Canvas::Canvas(VipsImage* image)
    : m_image(image, [](VipsImage* held) { g_object_unref(held); }) {}

Canvas Canvas::with(const std::function<int(VipsImage*, VipsImage**)>& operation) const {
    VipsImage* out = nullptr;
    if (operation(get(), &out) != 0)
        fail();
    return Canvas(out);
}

Canvas Canvas::inProfile(const std::string& profile) const {
    return with([&](VipsImage* in, VipsImage** out) {
        return vips_icc_transform(in, out, profile.c_str(), "input_profile", "srgb", "intent",
                                  VIPS_INTENT_RELATIVE, "black_point_compensation", TRUE, nullptr);
    });
}

Canvas Canvas::withOrientation(int tag) const {
    Canvas copy = with([](VipsImage* in, VipsImage** out) { return vips_copy(in, out, nullptr); });
    // One directory with one entry: the PNG writer passes EXIF on but makes none.
    std::vector<std::uint8_t> exif{
        'E', 'x', 'i', 'f', 0,    0, 'M', 'M', 0, 42, 0, 0, 0,
        8,   0,   1,   1,   0x12, 0, 3,   0,   0, 0,  1, 0, static_cast<std::uint8_t>(tag),
        0,   0,   0,   0,   0,    0};
    vips_image_set_blob_copy(copy.get(), VIPS_META_EXIF_NAME, exif.data(), exif.size());
    vips_image_set_int(copy.get(), VIPS_META_ORIENTATION, tag);
    return copy;
}

Canvas Canvas::withText(const char* field, const char* value) const {
    Canvas copy = with([](VipsImage* in, VipsImage** out) { return vips_copy(in, out, nullptr); });
    vips_image_set_string(copy.get(), field, value);
    return copy;
}

Canvas Canvas::withProfileBytes(std::span<const std::uint8_t> profile) const {
    Canvas copy = with([](VipsImage* in, VipsImage** out) { return vips_copy(in, out, nullptr); });
    vips_image_set_blob_copy(copy.get(), VIPS_META_ICC_NAME, profile.data(), profile.size());
    return copy;
}

Canvas Canvas::withoutProfile() const {
    Canvas copy = with([](VipsImage* in, VipsImage** out) { return vips_copy(in, out, nullptr); });
    vips_image_remove(copy.get(), VIPS_META_ICC_NAME);
    return copy;
}

std::filesystem::path Canvas::save(const std::filesystem::path& path) const {
    if (vips_image_write_to_file(get(), path.c_str(), nullptr) != 0)
        fail();
    const std::string text = path.string();
    return text.substr(0, text.find('['));
}

std::vector<std::uint8_t> Canvas::samples() const {
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> memory(vips_image_write_to_memory(get(), &size), &g_free);
    if (!memory)
        fail();
    const auto* first = static_cast<const std::uint8_t*>(memory.get());
    return {first, first + size};
}

Canvas fromSamples(int width, int height, int bands, std::vector<std::uint8_t> samples) {
    VipsImage* image = vips_image_new_from_memory_copy(samples.data(), samples.size(), width, height, bands,
                                                       VIPS_FORMAT_UCHAR);
    if (!image)
        fail();
    const Canvas raw(image);
    return raw.with([bands](VipsImage* in, VipsImage** out) {
        return vips_copy(in, out, "interpretation",
                         bands < 3 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB, nullptr);
    });
}

Canvas quarters(int width, int height, const Quarters& colours) {
    std::vector<std::uint8_t> samples;
    samples.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool right = x >= width / 2, bottom = y >= height / 2;
            const Rgb colour = bottom ? (right ? colours.bottomRight : colours.bottomLeft)
                                      : (right ? colours.topRight : colours.topLeft);
            for (const int value : {colour.r, colour.g, colour.b})
                samples.push_back(static_cast<std::uint8_t>(value));
        }
    }
    return fromSamples(width, height, 3, std::move(samples));
}

Canvas plain(int width, int height, Rgb colour) {
    return quarters(width, height, {colour, colour, colour, colour});
}

Rgb at(const Foundation::Image& image, double x, double y) {
    const int column = std::clamp(static_cast<int>(x * image.width), 0, image.width - 1);
    const int row = std::clamp(static_cast<int>(y * image.height), 0, image.height - 1);
    const std::uint8_t* pixel = image.row(row) + static_cast<std::ptrdiff_t>(column) * 3;
    return {pixel[0], pixel[1], pixel[2]};
}

bool isNear(Rgb a, Rgb b, int tolerance) {
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance &&
           std::abs(a.b - b.b) <= tolerance;
}

std::string difference(const std::optional<Foundation::Image>& image, const Quarters& expected,
                       int tolerance) {
    if (!image)
        return "nothing was decoded";
    std::ostringstream text;
    const auto check = [&](const char* where, double x, double y, Rgb wanted) {
        const Rgb seen = at(*image, x, y);
        if (!isNear(seen, wanted, tolerance))
            text << where << " is " << seen << " instead of " << wanted << "; ";
    };
    check("top left", 0.25, 0.25, expected.topLeft);
    check("top right", 0.75, 0.25, expected.topRight);
    check("bottom left", 0.25, 0.75, expected.bottomLeft);
    check("bottom right", 0.75, 0.75, expected.bottomRight);
    return text.str();
}

} // namespace Painting
