// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Small image files with chosen metadata, made byte by byte, and a folder to put them in.
namespace SampleFiles {

using Bytes = std::vector<std::uint8_t>;

inline Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

inline Bytes& append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return bytes;
}

inline Bytes& append(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

template <typename... Parts>
Bytes joined(const Parts&... parts) {
    Bytes bytes;
    (append(bytes, parts), ...);
    return bytes;
}

inline Bytes& appendBig(Bytes& bytes, std::uint64_t number, int length) {
    for (int i = length - 1; i >= 0; --i)
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    return bytes;
}

inline Bytes& appendLittle(Bytes& bytes, std::uint64_t number, int length) {
    for (int i = 0; i < length; ++i)
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    return bytes;
}

using Rational = std::pair<std::uint32_t, std::uint32_t>;

/// One tag of a TIFF directory; its value in the byte order of the structure.
struct Field {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    std::vector<std::uint64_t> numbers; // as wide as the type; for text, its bytes
    int width = 1;
};

inline Field textField(std::uint16_t tag, std::string_view text, bool isTerminated = true,
                       std::uint16_t type = 2) {
    Field field{tag, type, static_cast<std::uint32_t>(text.size()) + (isTerminated ? 1 : 0), {}, 1};
    for (const char c : text)
        field.numbers.push_back(static_cast<std::uint8_t>(c));
    if (isTerminated)
        field.numbers.push_back(0);
    return field;
}

inline Field rationalField(std::uint16_t tag, const std::vector<Rational>& values, std::uint16_t type = 5) {
    Field field{tag, type, static_cast<std::uint32_t>(values.size()), {}, 4};
    for (const Rational& value : values) {
        field.numbers.push_back(value.first);
        field.numbers.push_back(value.second);
    }
    return field;
}

inline Field shortField(std::uint16_t tag, std::uint16_t value) {
    return {tag, 3, 1, {value}, 2};
}

inline Field longField(std::uint16_t tag, std::uint32_t value) {
    return {tag, 4, 1, {value}, 4};
}

/// What an EXIF block says; fields that are empty are left out.
struct Exif {
    std::vector<Field> image;
    std::vector<Field> photo;
    std::vector<Field> gps;

    Exif& dateTimeOriginal(std::string_view text) {
        photo.push_back(textField(0x9003, text));
        return *this;
    }
    Exif& offsetTimeOriginal(std::string_view text) {
        photo.push_back(textField(0x9011, text));
        return *this;
    }
    Exif& orientation(std::uint16_t value) {
        image.push_back(shortField(0x0112, value));
        return *this;
    }
    Exif& latitude(const std::vector<Rational>& degrees, std::string_view reference) {
        gps.push_back(textField(1, reference));
        gps.push_back(rationalField(2, degrees));
        return *this;
    }
    Exif& longitude(const std::vector<Rational>& degrees, std::string_view reference) {
        gps.push_back(textField(3, reference));
        gps.push_back(rationalField(4, degrees));
        return *this;
    }
};

/// A TIFF structure that holds the tags, in either byte order.
inline Bytes tiff(Exif exif, bool isBigEndian = false, const std::vector<Field>& more = {}) {
    const auto number = [&](Bytes& bytes, std::uint64_t value, int width) {
        return isBigEndian ? appendBig(bytes, value, width) : appendLittle(bytes, value, width);
    };
    exif.image.insert(exif.image.end(), more.begin(), more.end());
    const auto lengthOf = [](const std::vector<Field>& fields) {
        std::size_t length = 2 + 12 * fields.size() + 4;
        for (const Field& field : fields) {
            const std::size_t size = field.numbers.size() * static_cast<std::size_t>(field.width);
            length += size > 4 ? size + size % 2 : 0;
        }
        return length;
    };
    // Pointers first, so that the lengths are final.
    if (!exif.photo.empty())
        exif.image.push_back(longField(0x8769, 0));
    if (!exif.gps.empty())
        exif.image.push_back(longField(0x8825, 0));
    const std::size_t imageStart = 8;
    const std::size_t photoStart = imageStart + lengthOf(exif.image);
    const std::size_t gpsStart = photoStart + (exif.photo.empty() ? 0 : lengthOf(exif.photo));
    for (Field& field : exif.image) {
        if (field.tag == 0x8769)
            field.numbers = {photoStart};
        if (field.tag == 0x8825)
            field.numbers = {gpsStart};
    }

    Bytes bytes = bytesOf(isBigEndian ? "MM" : "II");
    number(bytes, 42, 2);
    number(bytes, imageStart, 4);
    const auto directory = [&](const std::vector<Field>& fields) {
        std::size_t valueOffset = bytes.size() + 2 + 12 * fields.size() + 4;
        Bytes values;
        number(bytes, fields.size(), 2);
        for (const Field& field : fields) {
            number(bytes, field.tag, 2);
            number(bytes, field.type, 2);
            number(bytes, field.count, 4);
            Bytes value;
            for (const std::uint64_t part : field.numbers)
                number(value, part, field.width);
            if (value.size() <= 4) {
                value.resize(4);
                append(bytes, value);
            } else {
                number(bytes, valueOffset + values.size(), 4);
                append(values, value);
                if (values.size() % 2 != 0)
                    values.push_back(0);
            }
        }
        number(bytes, 0, 4);
        append(bytes, values);
    };
    directory(exif.image);
    if (!exif.photo.empty())
        directory(exif.photo);
    if (!exif.gps.empty())
        directory(exif.gps);
    return bytes;
}

/// A grey 8x8 JPEG with the EXIF block, or without one where it is empty.
inline Bytes jpeg(const Bytes& exifBlock = {}) {
    // The shortest baseline picture: one component, one block whose DC difference and AC are both zero.
    Bytes bytes{0xFF, 0xD8};
    if (!exifBlock.empty()) {
        append(bytes, {0xFF, 0xE1});
        appendBig(bytes, exifBlock.size() + 8, 2);
        append(bytes, std::string_view{"Exif\0\0", 6});
        append(bytes, exifBlock);
    }
    append(bytes, {0xFF, 0xDB, 0x00, 0x43, 0x00});
    bytes.insert(bytes.end(), 64, 1);
    append(bytes, {0xFF, 0xC0, 0x00, 0x0B, 0x08, 0x00, 0x08, 0x00, 0x08, 0x01, 0x01, 0x11, 0x00});
    for (const bool isAc : {false, true}) {
        append(bytes, {0xFF, 0xC4, 0x00, 0x14, static_cast<std::uint8_t>(isAc ? 0x10 : 0x00), 0x01});
        bytes.insert(bytes.end(), 15, 0);
        bytes.push_back(0x00);
    }
    append(bytes, {0xFF, 0xDA, 0x00, 0x08, 0x01, 0x01, 0x00, 0x00, 0x3F, 0x00, 0x3F});
    append(bytes, {0xFF, 0xD9});
    return bytes;
}

inline Bytes jpeg(const Exif& exif) {
    return jpeg(tiff(exif));
}

inline Bytes pngChunk(std::string_view type, const Bytes& contents) {
    Bytes checked = bytesOf(type);
    append(checked, contents);
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : checked) {
        crc ^= byte;
        for (int i = 0; i < 8; ++i)
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
    }
    Bytes chunk;
    appendBig(chunk, contents.size(), 4);
    append(chunk, checked);
    return appendBig(chunk, crc ^ 0xFFFFFFFF, 4);
}

/// A black 1x1 PNG. Where `exifComesLast`, its EXIF chunk follows the pixels.
inline Bytes png(const Bytes& exifBlock = {}, bool exifComesLast = false) {
    Bytes bytes = bytesOf("\x89PNG\r\n\x1A\n");
    append(bytes, pngChunk("IHDR", {0, 0, 0, 1, 0, 0, 0, 1, 8, 0, 0, 0, 0}));
    if (!exifBlock.empty() && !exifComesLast)
        append(bytes, pngChunk("eXIf", exifBlock));
    append(bytes, pngChunk("IDAT", {0x78, 0x9C, 0x63, 0x60, 0x00, 0x00, 0x00, 0x02, 0x00, 0x01}));
    if (!exifBlock.empty() && exifComesLast)
        append(bytes, pngChunk("eXIf", exifBlock));
    return append(bytes, pngChunk("IEND", {}));
}

/// The container of a WebP file with an EXIF chunk; its picture data is not a real picture.
inline Bytes webp(const Bytes& exifBlock) {
    Bytes chunks = bytesOf("WEBPVP8X");
    appendLittle(chunks, 10, 4);
    append(chunks, {0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    append(chunks, bytesOf("VP8 "));
    appendLittle(chunks, 3, 4);
    append(chunks, {1, 2, 3, 0}); // odd length and its padding
    append(chunks, bytesOf("EXIF"));
    appendLittle(chunks, exifBlock.size(), 4);
    append(chunks, exifBlock);
    Bytes bytes = bytesOf("RIFF");
    appendLittle(bytes, chunks.size(), 4);
    return append(bytes, chunks);
}

inline Bytes box(std::string_view type, const Bytes& contents) {
    Bytes bytes;
    appendBig(bytes, contents.size() + 8, 4);
    append(bytes, type);
    return append(bytes, contents);
}

struct HeifLayout {
    std::string_view brand = "heic";
    int itemLocationVersion = 1;
    /// In the metadata box itself rather than elsewhere in the file.
    bool isInItemData = false;
    /// In two pieces that do not touch.
    bool isSplit = false;
    /// The number before the TIFF structure, and that many bytes of it.
    std::string_view beforeTiff = std::string_view{"Exif\0\0", 6};
};

/// The container of a HEIF file with an EXIF item; it holds no picture.
inline Bytes heif(const Bytes& exifBlock, const HeifLayout& layout = {}) {
    Bytes item;
    appendBig(item, layout.beforeTiff.size(), 4);
    append(item, layout.beforeTiff);
    append(item, exifBlock);

    const auto build = [&](std::size_t dataOffset) {
        Bytes file = box("ftyp", joined(layout.brand, Bytes{0, 0, 0, 0}, "mif1heic"));
        Bytes entries = {0, 0, 0, 0, 0, 2};
        append(entries, box("infe", joined(Bytes{2, 0, 0, 0, 0, 1, 0, 0}, "hvc1", Bytes{0})));
        append(entries, box("infe", joined(Bytes{2, 0, 0, 0, 0, 2, 0, 0}, "Exif", Bytes{0})));
        Bytes location{static_cast<std::uint8_t>(layout.itemLocationVersion), 0, 0, 0, 0x44, 0x00};
        const int idSize = layout.itemLocationVersion < 2 ? 2 : 4;
        appendBig(location, 1, idSize);
        appendBig(location, 2, idSize);
        if (layout.itemLocationVersion > 0)
            appendBig(location, layout.isInItemData ? 1 : 0, 2);
        appendBig(location, 0, 2);
        const std::size_t base = layout.isInItemData ? 0 : dataOffset;
        if (layout.isSplit) {
            const std::size_t first = item.size() / 2;
            appendBig(location, 2, 2);
            appendBig(appendBig(location, base, 4), first, 4);
            appendBig(appendBig(location, base + first + 5, 4), item.size() - first, 4);
        } else {
            appendBig(location, 1, 2);
            appendBig(appendBig(location, base, 4), item.size(), 4);
        }
        Bytes data = item;
        if (layout.isSplit)
            data.insert(data.begin() + static_cast<std::ptrdiff_t>(item.size() / 2), 5, 0xAA);
        Bytes meta{0, 0, 0, 0};
        append(meta, box("iinf", entries));
        append(meta, box("iloc", location));
        if (layout.isInItemData)
            append(meta, box("idat", data));
        append(file, box("meta", meta));
        const std::size_t start = file.size() + 8;
        if (!layout.isInItemData)
            append(file, box("mdat", data));
        return std::pair{file, start};
    };
    return build(build(0).second).first;
}

/// Brotli's form for bytes as they are (at most 65536): one uncompressed piece and the end.
inline Bytes brotli(const Bytes& bytes) {
    Bytes stream;
    // Bits from the lowest: 0 (window of 64 KiB), 0 (not last), 00 (four nibbles of length), the length less
    // one in 16 bits, 1 (as it is).
    appendLittle(stream, (bytes.size() - 1) << 4 | std::uint64_t{1} << 20, 3);
    append(stream, bytes);
    stream.push_back(0x03); // last and empty
    return stream;
}

/// The container of a JPEG XL file with an EXIF box; it holds no picture.
inline Bytes jpegXl(const Bytes& exifBox) {
    Bytes file = box("JXL ", {0x0D, 0x0A, 0x87, 0x0A});
    append(file, box("ftyp", bytesOf(std::string_view{"jxl \0\0\0\0jxl ", 12})));
    return append(file, exifBox);
}

} // namespace SampleFiles
