// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifMaking.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

namespace HeifMaking {

namespace {

AVPixelFormat formatOf(const Coding& coding) {
    const bool wide = coding.bits == 10;
    switch (coding.chroma) {
    case Chroma::mono:
        return wide ? AV_PIX_FMT_GRAY10 : AV_PIX_FMT_GRAY8;
    case Chroma::c422:
        return wide ? AV_PIX_FMT_YUV422P10 : AV_PIX_FMT_YUV422P;
    case Chroma::c444:
        return wide ? AV_PIX_FMT_YUV444P10 : AV_PIX_FMT_YUV444P;
    case Chroma::c420:
        break;
    }
    return wide ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
}

/// Y, Cb or Cr of a colour as the encoder wants it.
int sampleOf(const Painting::Rgb& colour, int plane, const Coding& coding) {
    const double y =
        coding.red * colour.r + (1 - coding.red - coding.blue) * colour.g + coding.blue * colour.b;
    const double luma = y / 255;
    const double chroma = plane == 1 ? (colour.b - y) / 255 / (2 * (1 - coding.blue))
                                     : (colour.r - y) / 255 / (2 * (1 - coding.red));
    const double unit = std::exp2(coding.bits - 8), most = std::exp2(coding.bits) - 1;
    double value = 0;
    if (plane == 0)
        value = coding.fullRange ? luma * most : (16 + 219 * luma) * unit;
    else
        value = std::exp2(coding.bits - 1) + (coding.fullRange ? chroma * most : chroma * 224 * unit);
    return std::clamp(static_cast<int>(std::lround(value)), 0, static_cast<int>(most));
}

void require(bool condition, const char* what) {
    if (!condition)
        throw std::runtime_error(what);
}

/// Splits at start codes.
std::vector<Bytes> units(std::span<const std::uint8_t> stream) {
    std::vector<Bytes> result;
    std::size_t begin = stream.size();
    for (std::size_t i = 0; i + 3 <= stream.size(); ++i) {
        if (stream[i] != 0 || stream[i + 1] != 0 || stream[i + 2] != 1)
            continue;
        if (begin < stream.size())
            result.emplace_back(stream.begin() + static_cast<std::ptrdiff_t>(begin),
                                stream.begin() +
                                    static_cast<std::ptrdiff_t>(i > 0 && stream[i - 1] == 0 ? i - 1 : i));
        begin = i + 3;
    }
    if (begin < stream.size())
        result.emplace_back(stream.begin() + static_cast<std::ptrdiff_t>(begin), stream.end());
    return result;
}

void append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes bytes;
    for (const Bytes& part : parts)
        append(bytes, part);
    return bytes;
}

Bytes text(std::string_view characters) {
    return {characters.begin(), characters.end()};
}

Bytes configuration(const Coded& coded) {
    Bytes payload(23, 0);
    payload[0] = 1;
    payload[21] = 3; // lengths of four bytes
    payload[22] = static_cast<std::uint8_t>(coded.parameterSets.size());
    for (const Bytes& unit : coded.parameterSets) {
        payload.push_back(static_cast<std::uint8_t>(0x80 | (unit[0] >> 1 & 63)));
        append(payload, joined({big(1, 2), big(unit.size(), 2), unit}));
    }
    return box("hvcC", payload);
}

Bytes size(int width, int height) {
    return fullBox(
        "ispe", 0, 0,
        joined({big(static_cast<std::uint64_t>(width), 4), big(static_cast<std::uint64_t>(height), 4)}));
}

struct Item {
    std::uint32_t id = 0;
    std::string type;
    Bytes data;
    bool inMeta = false;
    std::vector<int> properties;
    std::vector<std::uint32_t> derivedFrom;
    std::vector<std::uint32_t> auxiliaryOf;
};

/// Collects properties, each kept once.
class Properties {
public:
    int add(const Bytes& property) {
        const auto found = std::ranges::find(m_all, property);
        if (found != m_all.end())
            return static_cast<int>(found - m_all.begin()) + 1;
        m_all.push_back(property);
        return static_cast<int>(m_all.size());
    }
    [[nodiscard]] Bytes container() const {
        Bytes payload;
        for (const Bytes& property : m_all)
            append(payload, property);
        return box("ipco", payload);
    }

private:
    std::vector<Bytes> m_all;
};

Bytes assembled(std::vector<Item> items, const Properties& properties, std::uint32_t primary,
                const Layout& layout) {
    const int idBytes = layout.wideIds ? 4 : 2;
    Bytes infos, associations, references, inMeta, data;
    for (const Item& item : items) {
        append(infos, fullBox("infe", layout.wideIds ? 3 : 2, 0,
                              joined({big(item.id, idBytes), big(0, 2), text(item.type), {0}})));
        append(associations, joined({big(item.id, idBytes), big(item.properties.size(), 1)}));
        for (const int property : item.properties)
            append(associations, layout.wideIds ? big(static_cast<std::uint64_t>(property) | 0x8000, 2)
                                                : big(static_cast<std::uint64_t>(property) | 0x80, 1));
        const auto refer = [&](const char* type, const std::vector<std::uint32_t>& ids) {
            if (ids.empty())
                return;
            Bytes payload = joined({big(item.id, idBytes), big(ids.size(), 2)});
            for (const std::uint32_t id : ids)
                append(payload, big(id, idBytes));
            append(references, box(type, payload));
        };
        refer("dimg", item.derivedFrom);
        refer("auxl", item.auxiliaryOf);
    }
    const Bytes head = box("ftyp", joined({text("heic"), big(0, 4), text("mif1"), text("heic")}));

    const auto meta = [&](std::uint64_t dataStart) {
        Bytes locations = joined({{0x44, 0x40}, big(items.size(), layout.locationVersion == 2 ? 4 : 2)});
        std::uint64_t inFile = dataStart, inBox = 0;
        for (const Item& item : items) {
            append(locations, big(item.id, layout.locationVersion == 2 ? 4 : 2));
            if (layout.locationVersion > 0)
                append(locations, big(item.inMeta ? 1 : 0, 2));
            std::uint64_t& at = item.inMeta ? inBox : inFile;
            const std::uint64_t length = item.data.size();
            append(locations, joined({big(0, 2), big(at, 4)}));
            if (layout.split && length > 1) {
                append(locations, joined({big(2, 2), big(0, 4), big(length / 2, 4), big(length / 2, 4),
                                          big(length - length / 2, 4)}));
            } else {
                append(locations, joined({big(1, 2), big(0, 4), big(length, 4)}));
            }
            at += length;
        }
        return fullBox(
            "meta", 0, 0,
            joined({fullBox("hdlr", 0, 0, joined({big(0, 4), text("pict"), Bytes(13, 0)})),
                    fullBox("pitm", layout.wideIds ? 1 : 0, 0, big(primary, idBytes)),
                    fullBox("iloc", layout.locationVersion, 0, locations),
                    fullBox("iinf", 0, 0, joined({big(items.size(), 2), infos})),
                    fullBox("iref", layout.wideIds ? 1 : 0, 0, references),
                    box("iprp", joined({properties.container(),
                                        fullBox("ipma", layout.wideIds ? 1 : 0, layout.wideIds ? 1 : 0,
                                                joined({big(items.size(), 4), associations}))})),
                    box("idat", inMeta)}));
    };
    for (const Item& item : items)
        append(item.inMeta ? inMeta : data, item.data);
    const std::uint64_t dataStart = head.size() + meta(0).size() + 8;
    return joined({head, meta(dataStart), box("mdat", data)});
}

} // namespace

Coded encoded(int width, int height, const Painting::Quarters& colours, const Coding& coding) {
    const AVCodec* codec = avcodec_find_encoder_by_name("libx265");
    require(codec != nullptr, "there is no libx265");
    const auto freeContext = [](AVCodecContext* held) { avcodec_free_context(&held); };
    const std::unique_ptr<AVCodecContext, decltype(freeContext)> context(avcodec_alloc_context3(codec),
                                                                         freeContext);
    context->width = width;
    context->height = height;
    context->pix_fmt = formatOf(coding);
    context->time_base = {1, 25};
    context->color_range = coding.fullRange ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    av_opt_set(context->priv_data, "preset", "ultrafast", 0);
    av_opt_set(context->priv_data, "x265-params", "log-level=none:keyint=1:crf=4:info=0:pools=none", 0);
    require(avcodec_open2(context.get(), codec, nullptr) == 0, "the encoder does not start");

    const auto freeFrame = [](AVFrame* held) { av_frame_free(&held); };
    const std::unique_ptr<AVFrame, decltype(freeFrame)> frame(av_frame_alloc(), freeFrame);
    frame->format = context->pix_fmt;
    frame->width = width;
    frame->height = height;
    frame->color_range = context->color_range;
    require(av_frame_get_buffer(frame.get(), 0) == 0, "no memory");
    for (int plane = 0; plane < (coding.chroma == Chroma::mono ? 1 : 3); ++plane) {
        const bool narrow = plane > 0 && coding.chroma != Chroma::c444;
        const bool low = plane > 0 && coding.chroma == Chroma::c420;
        const int columns = narrow ? width / 2 : width, rows = low ? height / 2 : height;
        for (int y = 0; y < rows; ++y) {
            std::uint8_t* row = frame->data[plane] + static_cast<std::ptrdiff_t>(y) * frame->linesize[plane];
            for (int x = 0; x < columns; ++x) {
                const bool right = x >= columns / 2, bottom = y >= rows / 2;
                const Painting::Rgb& colour = bottom ? (right ? colours.bottomRight : colours.bottomLeft)
                                                     : (right ? colours.topRight : colours.topLeft);
                const int sample = sampleOf(colour, plane, coding);
                if (coding.bits > 8) {
                    const auto wide = static_cast<std::uint16_t>(sample);
                    std::memcpy(row + static_cast<std::ptrdiff_t>(x) * 2, &wide, 2);
                } else {
                    row[x] = static_cast<std::uint8_t>(sample);
                }
            }
        }
    }
    require(avcodec_send_frame(context.get(), frame.get()) == 0 &&
                avcodec_send_frame(context.get(), nullptr) == 0,
            "the encoder takes no picture");
    const auto freePacket = [](AVPacket* held) { av_packet_free(&held); };
    const std::unique_ptr<AVPacket, decltype(freePacket)> packet(av_packet_alloc(), freePacket);
    require(avcodec_receive_packet(context.get(), packet.get()) == 0, "the encoder gives no picture");

    Coded result{width, height, {}, {}};
    for (const Bytes& unit : units({context->extradata, static_cast<std::size_t>(context->extradata_size)})) {
        const int type = unit[0] >> 1 & 63;
        if (type >= 32 && type <= 34)
            result.parameterSets.push_back(unit);
    }
    for (const Bytes& unit : units({packet->data, static_cast<std::size_t>(packet->size)})) {
        if ((unit[0] >> 1 & 63) < 32)
            append(result.data, joined({big(unit.size(), 4), unit}));
    }
    return result;
}

Bytes big(std::uint64_t value, int bytes) {
    Bytes result;
    for (int i = bytes - 1; i >= 0; --i)
        result.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    return result;
}

Bytes box(std::string_view type, const Bytes& payload) {
    return joined({big(payload.size() + 8, 4), text(type), payload});
}

Bytes fullBox(std::string_view type, int version, std::uint32_t flags, const Bytes& payload) {
    return box(type, joined({big(static_cast<std::uint64_t>(version) << 24 | flags, 4), payload}));
}

Bytes rotation(int quarterTurnsAnticlockwise) {
    return box("irot", {static_cast<std::uint8_t>(quarterTurnsAnticlockwise)});
}

Bytes mirror(int axis) {
    return box("imir", {static_cast<std::uint8_t>(axis)});
}

Bytes crop(int width, int height, int offsetX, int offsetY, int denominator) {
    Bytes payload;
    for (const int value : {width, height, offsetX, offsetY}) {
        append(payload, big(static_cast<std::uint32_t>(value), 4));
        append(payload, big(static_cast<std::uint64_t>(denominator), 4));
    }
    return box("clap", payload);
}

Bytes nclx(int primaries, int transfer, int matrix, bool fullRange) {
    return box("colr", joined({text("nclx"),
                               big(static_cast<std::uint64_t>(primaries), 2),
                               big(static_cast<std::uint64_t>(transfer), 2),
                               big(static_cast<std::uint64_t>(matrix), 2),
                               {static_cast<std::uint8_t>(fullRange ? 0x80 : 0)}}));
}

Bytes icc(const Bytes& profile) {
    return box("colr", joined({text("prof"), profile}));
}

Bytes file(const std::vector<Coded>& tiles, const Layout& layout) {
    Properties properties;
    std::vector<Item> items;
    const int count = layout.columns * layout.rows;
    std::uint32_t next = 10;
    const auto isShared = tiles.size() == 1 && count > 1;
    for (int i = 0; i < (isShared ? 1 : count); ++i) {
        const Coded& tile = tiles[static_cast<std::size_t>(i)];
        Item item{next++, "hvc1", tile.data, false, {}, {}, {}};
        item.properties = {properties.add(size(tile.width, tile.height)),
                           properties.add(configuration(tile))};
        items.push_back(item);
    }
    std::uint32_t primary = items.front().id;
    const int width = layout.width > 0 ? layout.width : tiles.front().width * layout.columns;
    const int height = layout.height > 0 ? layout.height : tiles.front().height * layout.rows;
    if (layout.isGrid) {
        Item grid{next++, "grid", {}, layout.gridInMeta, {}, {}, {}};
        grid.data = joined(
            {{0, 0},
             {static_cast<std::uint8_t>(layout.rows - 1), static_cast<std::uint8_t>(layout.columns - 1)},
             big(static_cast<std::uint64_t>(width), 2),
             big(static_cast<std::uint64_t>(height), 2)});
        grid.properties = {properties.add(size(width, height))};
        for (int i = 0; i < count; ++i)
            grid.derivedFrom.push_back(items[isShared ? 0 : static_cast<std::size_t>(i)].id);
        primary = grid.id;
        items.push_back(grid);
    }
    if (layout.derived) {
        Item identity{next++, "iden", {}, true, {properties.add(size(width, height))}, {primary}, {}};
        primary = identity.id;
        items.push_back(identity);
    }
    for (const Bytes& property : layout.properties)
        items.back().properties.push_back(properties.add(property));
    if (layout.clutter) {
        const int gainMap =
            properties.add(fullBox("auxC", 0, 0, text(std::string("urn:com:example:gainmap\0", 24))));
        for (int i = 0; i < 12; ++i)
            items.push_back({next++, "hvc1", tiles.front().data, false, {gainMap}, {}, {primary}});
        items.push_back({next++, "tmap", {1, 2, 3}, true, {99}, {primary, 4711}, {}});
        items.push_back({next++, "Exif", {0, 0, 0, 0}, false, {}, {}, {}});
    }
    return assembled(std::move(items), properties, primary, layout);
}

} // namespace HeifMaking
