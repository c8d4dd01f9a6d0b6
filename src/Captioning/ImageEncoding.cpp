// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionError.h>
#include <Captioning/ImageEncoding.h>
#include <Foundation/Bytes.h>

#include <vips/vips.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace Captioning::ImageEncoding {

namespace {

struct Unref {
    void operator()(VipsImage* image) const { g_object_unref(image); }
};
using ImageHandle = std::unique_ptr<VipsImage, Unref>;

struct Free {
    void operator()(void* memory) const { g_free(memory); }
};

Foundation::Bytes jpeg(const Foundation::Image& image, int width, int height, int quality) {
    const auto fail = [] { vips_error_clear(); };
    ImageHandle picture{vips_image_new_from_memory(image.pixels.data(), image.pixels.size(), image.width,
                                                   image.height, 3, VIPS_FORMAT_UCHAR)};
    if (!picture) {
        fail();
        return {};
    }
    if (width != image.width || height != image.height) {
        VipsImage* scaled = nullptr;
        // The forced size makes both sides exact; the aspect differs by less than a pixel.
        if (vips_thumbnail_image(picture.get(), &scaled, width, "height", height, "size", VIPS_SIZE_FORCE,
                                 nullptr) != 0) {
            fail();
            return {};
        }
        picture.reset(scaled);
    }
    void* buffer = nullptr;
    std::size_t length = 0;
    if (vips_jpegsave_buffer(picture.get(), &buffer, &length, "Q", quality, "strip", TRUE, nullptr) != 0) {
        fail();
        return {};
    }
    const std::unique_ptr<void, Free> owner{buffer};
    const auto* bytes = static_cast<const std::uint8_t*>(buffer);
    return {bytes, bytes + length};
}

} // namespace

std::string jpegBase64(const Foundation::Image& image, int maxDimension, double quality) {
    const int longest = std::max(image.width, image.height);
    const double scale = longest > maxDimension ? static_cast<double>(maxDimension) / longest : 1.0;
    const auto scaled = [scale](int side) { return std::max(1, static_cast<int>(std::round(side * scale))); };

    Foundation::Bytes bytes;
    if (!image.isEmpty())
        bytes = jpeg(image, scaled(image.width), scaled(image.height),
                     static_cast<int>(std::lround(quality * 100)));
    if (bytes.empty())
        throw CaptionError{TransportFailure{"Could not encode the photo for the vision model."}};
    return Foundation::base64Encoded(bytes);
}

} // namespace Captioning::ImageEncoding
