// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/BoxedExif.h>
#include <PhotoSources/EmbeddedExif.h>

#include <algorithm>
#include <string_view>

namespace PhotoSources {

namespace {

/// Far more parts than any real file has; a hostile one must not keep us busy.
constexpr int maximumParts = 65'536;

constexpr std::string_view exifMark{"Exif\0\0", 6};

template <std::size_t length>
bool startsWith(const std::array<std::uint8_t, length>& bytes, std::string_view text,
                std::size_t position = 0) {
    return position + text.size() <= length &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(position),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

/// A file that ends inside of its EXIF data is broken there; nobody reads dates from what is left.
bool isWhole(const ByteSource& file, std::uint64_t offset, std::uint64_t length) {
    return offset <= file.size() && length <= file.size() - offset;
}

/// Some writers put the mark of JPEG's segment before the TIFF structure in other containers too.
ExifTags readBlock(const ByteSource& block) {
    const auto start = block.bytesAt<6>(0);
    if (start && startsWith(*start, exifMark))
        return readTiffTags(SourceRange{block, exifMark.size(), block.size()});
    return readTiffTags(block);
}

ExifTags readJpeg(const ByteSource& file) {
    std::uint64_t position = 2;
    for (int part = 0; part < maximumParts; ++part) {
        const auto segment = file.bytesAt<4>(position);
        if (!segment || (*segment)[0] != 0xFF)
            break;
        const std::uint8_t marker = (*segment)[1];
        if (marker == 0xFF) { // fill byte
            ++position;
            continue;
        }
        if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) { // without contents
            position += 2;
            continue;
        }
        const std::uint16_t length = bigEndian16(*segment, 2);
        constexpr std::uint8_t endOfImage = 0xD9;
        constexpr std::uint8_t startOfScan = 0xDA;
        if (marker == endOfImage || marker == startOfScan || length < 2 ||
            !isWhole(file, position + 2, length))
            break;
        constexpr std::uint8_t app1 = 0xE1;
        if (marker == app1 && length >= 2 + exifMark.size()) {
            const auto mark = file.bytesAt<6>(position + 4);
            if (mark && startsWith(*mark, exifMark))
                return readTiffTags(
                    SourceRange{file, position + 4 + exifMark.size(), length - 2 - exifMark.size()});
        }
        position += 2 + std::uint64_t{length};
    }
    return {};
}

/// Nothing where the EXIF data is in the older form of a text chunk.
std::optional<ExifTags> readPng(const ByteSource& file) {
    bool hasTextForm = false;
    std::uint64_t position = 8;
    for (int part = 0; part < maximumParts; ++part) {
        const auto chunk = file.bytesAt<8>(position);
        if (!chunk || startsWith(*chunk, "IEND", 4))
            break;
        const std::uint64_t length = bigEndian32(*chunk, 0);
        if (startsWith(*chunk, "eXIf", 4) && isWhole(file, position + 8, length))
            return readBlock(SourceRange{file, position + 8, length});
        if (startsWith(*chunk, "tEXt", 4) || startsWith(*chunk, "zTXt", 4) || startsWith(*chunk, "iTXt", 4)) {
            const auto keyword = file.bytesAt<21>(position + 8);
            hasTextForm = hasTextForm || (keyword && (startsWith(*keyword, "Raw profile type exif") ||
                                                      startsWith(*keyword, "Raw profile type APP1")));
        }
        position += 12 + length;
    }
    return hasTextForm ? std::nullopt : std::optional{ExifTags{}};
}

ExifTags readWebp(const ByteSource& file) {
    std::uint64_t position = 12;
    for (int part = 0; part < maximumParts; ++part) {
        const auto chunk = file.bytesAt<8>(position);
        if (!chunk)
            break;
        const std::uint64_t length = numberIn<std::uint32_t>(*chunk, 4, ByteOrder::LittleEndian);
        if (startsWith(*chunk, "EXIF") && isWhole(file, position + 8, length))
            return readBlock(SourceRange{file, position + 8, length});
        position += 8 + length + length % 2;
    }
    return {};
}

/// Fujifilm's raw files carry a whole JPEG with the EXIF data.
ExifTags readFujifilm(const ByteSource& file) {
    const auto place = file.bytesAt<8>(84);
    return place ? readJpeg(SourceRange{file, bigEndian32(*place, 0), bigEndian32(*place, 4)}) : ExifTags{};
}

} // namespace

std::optional<ExifTags> readEmbeddedExif(const ByteSource& file) {
    const auto start = file.bytesAt<16>(0);
    if (!start)
        return std::nullopt;
    if (startsWith(*start, "\xFF\xD8\xFF"))
        return readJpeg(file);
    if (startsWith(*start, "\x89PNG\r\n\x1A\n"))
        return readPng(file);
    if (startsWith(*start, "RIFF") && startsWith(*start, "WEBP", 8))
        return readWebp(file);
    if (startsWith(*start, "ftyp", 4))
        return readIsoMediaExif(file);
    if (startsWith(*start, "JXL \r\n\x87\n", 4))
        return readJpegXlExif(file);
    if (startsWith(*start, "FUJIFILMCCD-RAW "))
        return readFujifilm(file);
    if (isTiff(file))
        return readTiffTags(file);
    // Formats without EXIF data.
    if (startsWith(*start, "GIF8") || startsWith(*start, "BM") || startsWith(*start, "\xFF\x0A"))
        return ExifTags{};
    return std::nullopt;
}

} // namespace PhotoSources
