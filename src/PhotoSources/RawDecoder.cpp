// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/RawDecoder.h>
#include <PhotoSources/VipsPicture.h>

#include <libraw/libraw.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace PhotoSources::RawDecoder {

namespace {

/// The largest sensors have 150 megapixels.
constexpr std::uint64_t mostSensorPixels = 160'000'000;
constexpr unsigned mostMegabytes = 768;
/// However well the sensor's samples are packed, a byte does not hold more of them.
constexpr std::uint64_t mostPixelsPerByte = 32;
/// The size of an EXIF thumbnail; anything smaller is not a picture of the photo.
constexpr int leastPreviewSide = 160;

Orientation orientationOf(int flip) {
    switch (flip) {
    case 3:
        return Orientation::fromExif(3);
    case 5:
        return Orientation::fromExif(8);
    case 6:
        return Orientation::fromExif(6);
    default:
        return {};
    }
}

template <typename Data>
void limitMemory(Data& data) {
    // LibRaw 0.21 moved the setting.
    if constexpr (requires { data.rawparams.max_raw_memory_mb; })
        data.rawparams.max_raw_memory_mb = mostMegabytes;
    else
        data.params.max_raw_memory_mb = mostMegabytes;
}

std::optional<Foundation::Image> developed(LibRaw& raw, int maxPixel, const Orientation& orientation) {
    libraw_output_params_t& params = raw.imgdata.params;
    const libraw_image_sizes_t& sizes = raw.imgdata.sizes;
    params.use_camera_wb = 1;
    params.output_color = 1; // sRGB
    params.output_bps = 8;
    params.gamm[0] = 1 / 2.4;
    params.gamm[1] = 12.92;
    params.user_flip = 0; // turned here, after scaling
    if (raw.is_coolscan_nef()) {
        // A film scanner's "raw" holds finished colours: pass them through.
        params.use_camera_wb = 0;
        params.output_color = 0;
        params.no_auto_scale = 1;
        params.no_auto_bright = 1;
        params.gamm[0] = params.gamm[1] = 1;
    }
    params.half_size = std::max(sizes.iwidth, sizes.iheight) / 2 >= maxPixel ? 1 : 0;
    // LibRaw carries on after damaged data, with whatever was in memory.
    bool isDamaged = false;
    raw.set_dataerror_handler([](void* flag, const char*, auto) { *static_cast<bool*>(flag) = true; },
                              &isDamaged);
    const bool isUnpacked = raw.unpack() == LIBRAW_SUCCESS;
    raw.set_dataerror_handler([](void*, const char*, auto) {}, nullptr);
    if (!isUnpacked || isDamaged)
        return std::nullopt;
    if (raw.dcraw_process() != LIBRAW_SUCCESS)
        return std::nullopt;

    int width = 0, height = 0, colours = 0, bits = 0;
    raw.get_mem_image_format(&width, &height, &colours, &bits);
    if (width < 1 || height < 1 || bits != 8 || (colours != 1 && colours != 3))
        return std::nullopt;
    RgbSamples samples{width, height, 8, {}, {}};
    const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    samples.bytes.resize(pixels * 3);
    if (raw.copy_mem_image(samples.bytes.data(), width * colours, 0) != LIBRAW_SUCCESS)
        return std::nullopt;
    if (colours == 1) {
        for (std::size_t i = pixels; i-- > 0;)
            std::fill_n(samples.bytes.begin() + static_cast<std::ptrdiff_t>(i * 3), 3, samples.bytes[i]);
    }
    raw.recycle();
    // A file whose samples were cut off may "unpack" to nothing but one value.
    if (std::equal(samples.bytes.begin() + 3, samples.bytes.end(), samples.bytes.begin()))
        return std::nullopt;
    return VipsPicture::finish(samples, width, height, orientation, maxPixel);
}

std::optional<Foundation::Image> preview(LibRaw& raw, int maxPixel, const Orientation& orientation) {
    if (raw.unpack_thumb() != LIBRAW_SUCCESS)
        return std::nullopt;
    const libraw_thumbnail_t& thumbnail = raw.imgdata.thumbnail;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(thumbnail.thumb);
    if (!bytes || thumbnail.tlength == 0 || std::max(thumbnail.twidth, thumbnail.theight) < leastPreviewSide)
        return std::nullopt;
    if (thumbnail.tformat == LIBRAW_THUMBNAIL_JPEG) {
        const bool sensorIsWide = raw.imgdata.sizes.width >= raw.imgdata.sizes.height;
        return VipsPicture::decodePreview({bytes, thumbnail.tlength}, maxPixel, orientation, sensorIsWide);
    }
    const std::size_t expected = std::size_t{thumbnail.twidth} * thumbnail.theight * 3;
    if (thumbnail.tformat != LIBRAW_THUMBNAIL_BITMAP || expected == 0 || thumbnail.tlength < expected)
        return std::nullopt;
    const RgbSamples samples{thumbnail.twidth, thumbnail.theight, 8, {bytes, bytes + expected}, {}};
    return VipsPicture::finish(samples, samples.width, samples.height, orientation, maxPixel);
}

} // namespace

std::optional<Foundation::Image> decode(const ImageFile& file, int maxPixel) {
    // Opened by descriptor, so that it is the file that was found to be a regular one.
    const std::string name = "/proc/self/fd/" + std::to_string(file.descriptor());
    // Large enough to matter on a thread's stack.
    const auto raw = std::make_unique<LibRaw>();
    raw->set_dataerror_handler([](void*, const char*, auto) {}, nullptr);
    limitMemory(raw->imgdata);
    if (raw->open_file(name.c_str()) != LIBRAW_SUCCESS)
        return std::nullopt;
    const libraw_image_sizes_t& sizes = raw->imgdata.sizes;
    const Orientation orientation = orientationOf(sizes.flip);
    const std::uint64_t pixels = std::uint64_t{sizes.raw_width} * sizes.raw_height;
    if (pixels <= mostSensorPixels && pixels / mostPixelsPerByte <= file.size()) {
        if (std::optional<Foundation::Image> image = developed(*raw, maxPixel, orientation))
            return image;
        raw->recycle();
        if (raw->open_file(name.c_str()) != LIBRAW_SUCCESS)
            return std::nullopt;
    }
    return preview(*raw, maxPixel, orientation);
}

} // namespace PhotoSources::RawDecoder
