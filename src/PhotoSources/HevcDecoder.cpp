// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ByteReader.h>
#include <PhotoSources/HevcDecoder.h>
#include <PhotoSources/HevcSequence.h>

#include <libde265/de265.h>

#include <algorithm>
#include <limits>

namespace PhotoSources {

namespace {

constexpr unsigned unitTypeLastSlice = 31;
constexpr unsigned unitTypeSequence = 33;
constexpr unsigned unitTypePicture = 34;
constexpr unsigned unitTypeVideo = 32;

unsigned unitType(std::span<const std::uint8_t> unit) {
    return unit[0] >> 1 & 63U;
}

} // namespace

class HevcDecoder::Context {
public:
    Context()
        : m_decoder(de265_new_decoder()) {
        if (m_decoder) {
            // Tiles are decoded side by side already, and a checksum would only cost time.
            de265_set_parameter_bool(m_decoder, DE265_DECODER_PARAM_BOOL_SEI_CHECK_HASH, 0);
            de265_set_parameter_bool(m_decoder, DE265_DECODER_PARAM_SUPPRESS_FAULTY_PICTURES, 0);
        }
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() {
        if (m_decoder)
            de265_free_decoder(m_decoder);
    }

    [[nodiscard]] bool push(std::span<const std::uint8_t> unit) {
        return m_decoder && unit.size() <= std::numeric_limits<int>::max() &&
               de265_isOK(de265_push_NAL(m_decoder, unit.data(), static_cast<int>(unit.size()), 0, nullptr));
    }

    [[nodiscard]] const de265_image* picture() {
        if (!m_decoder || !de265_isOK(de265_flush_data(m_decoder)))
            return nullptr;
        // Every round takes at least one unit off the queue; the count is for a library that thinks
        // otherwise.
        int rounds = de265_get_number_of_NAL_units_pending(m_decoder) + 16;
        for (int more = 1; more && rounds > 0; --rounds) {
            const de265_error error = de265_decode(m_decoder, &more);
            if (const de265_image* image = de265_get_next_picture(m_decoder))
                return image;
            if (!de265_isOK(error))
                return nullptr;
        }
        return nullptr;
    }

private:
    de265_decoder_context* m_decoder;
};

HevcDecoder::HevcDecoder(std::uint64_t mostPixels)
    : m_mostPixels(mostPixels) {}

HevcDecoder::~HevcDecoder() = default;

std::optional<HevcPlanes> HevcDecoder::decode(const HeifTile& tile) {
    // A fresh decoder for every picture: what an earlier one left behind cannot matter.
    m_context = std::make_unique<Context>();

    const auto push = [this](std::span<const std::uint8_t> unit) {
        if (unit.size() < 3)
            return true;
        if (unitType(unit) == unitTypeSequence) {
            const std::optional<HevcSequence> sequence = HevcSequence::read(unit);
            if (!sequence || std::uint64_t{sequence->width} * sequence->height > m_mostPixels)
                return false;
        }
        return m_context->push(unit);
    };

    for (const std::span<const std::uint8_t> unit : tile.parameters->units) {
        const unsigned type = unitType(unit);
        // What else may stand there (supplemental information) is not needed.
        if (type < unitTypeVideo || type > unitTypePicture)
            continue;
        if (!push(unit))
            return std::nullopt;
    }

    std::vector<std::uint8_t> together;
    std::span<const std::uint8_t> data;
    if (tile.data.size() == 1) {
        data = tile.data.front();
    } else {
        for (const std::span<const std::uint8_t> piece : tile.data)
            together.insert(together.end(), piece.begin(), piece.end());
        data = together;
    }
    ByteReader reader(data);
    const auto lengthSize = static_cast<std::size_t>(tile.parameters->lengthSize);
    bool hasSlice = false;
    while (reader.remaining() > lengthSize) {
        const std::uint64_t length = std::min<std::uint64_t>(reader.number(lengthSize), reader.remaining());
        const std::span<const std::uint8_t> unit = reader.bytes(length);
        if (unit.size() < 3)
            continue;
        if (!push(unit))
            return std::nullopt;
        hasSlice = hasSlice || unitType(unit) <= unitTypeLastSlice;
    }
    const de265_image* image = hasSlice ? m_context->picture() : nullptr;
    if (!image)
        return std::nullopt;

    HevcPlanes result;
    switch (de265_get_chroma_format(image)) {
    case de265_chroma_mono:
        result.layout = ChromaLayout::mono;
        break;
    case de265_chroma_420:
        result.layout = ChromaLayout::c420;
        break;
    case de265_chroma_422:
        result.layout = ChromaLayout::c422;
        break;
    case de265_chroma_444:
        result.layout = ChromaLayout::c444;
        break;
    }
    const int channels = result.layout == ChromaLayout::mono ? 1 : 3;
    for (int channel = 0; channel < channels; ++channel) {
        HevcPlanes::Plane& plane = result.planes[static_cast<std::size_t>(channel)];
        int stride = 0;
        plane.data = de265_get_image_plane(image, channel, &stride);
        plane.bytesPerRow = static_cast<std::size_t>(std::max(stride, 0));
        plane.width = de265_get_image_width(image, channel);
        plane.height = de265_get_image_height(image, channel);
        plane.bits = de265_get_bits_per_pixel(image, channel);
        if (!plane.data || plane.width < 1 || plane.height < 1 || plane.bits < 8 || plane.bits > 16)
            return std::nullopt;
    }
    result.coding = {de265_get_image_colour_primaries(image), de265_get_image_transfer_characteristics(image),
                     de265_get_image_matrix_coefficients(image), de265_get_image_full_range_flag(image) != 0};
    return result;
}

} // namespace PhotoSources
