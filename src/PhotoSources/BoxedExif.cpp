// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/BoxedExif.h>
#include <PhotoSources/HeifMeta.h>
#include <PhotoSources/IsoBoxes.h>

#include <brotli/decode.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace PhotoSources {

namespace {

using IsoBoxes::Box;
using IsoBoxes::findBox;
using IsoBoxes::fourCC;

/// EXIF data holds a thumbnail and a maker's notes at most.
constexpr std::size_t maximumExifLength = 8 << 20;
/// The largest meta boxes list some thousand tiles, in a few dozen bytes each.
constexpr std::uint64_t maximumMetaLength = 16 << 20;

std::optional<std::vector<std::uint8_t>> bytesOf(const ByteSource& source, std::uint64_t most) {
    if (source.size() > most)
        return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(source.size()));
    if (!source.read(0, bytes))
        return std::nullopt;
    return bytes;
}

/// The bytes of an item, put together from where they lie.
std::vector<std::uint8_t> itemBytes(const ByteSource& file, const HeifItem& item) {
    std::vector<std::uint8_t> bytes;
    for (const HeifExtent& extent : item.data) {
        const std::size_t before = bytes.size();
        bytes.resize(std::min(before + static_cast<std::size_t>(extent.length), maximumExifLength));
        if (!file.read(extent.offset, std::span{bytes}.subspan(before)))
            return {};
    }
    return bytes;
}

/// In HEIF and JPEG XL the TIFF structure follows a number that says how far away it begins.
ExifTags readAfterOffset(const ByteSource& block) {
    const auto offset = block.bytesAt<4>(0);
    if (!offset)
        return {};
    const SourceRange tiff{block, 4 + std::uint64_t{bigEndian32(*offset, 0)}, block.size()};
    if (isTiff(tiff))
        return readTiffTags(tiff);
    // Some writers leave the number out, or count from elsewhere.
    for (const std::uint64_t position : std::array<std::uint64_t, 4>{0, 4, 6, 10}) {
        const SourceRange candidate{block, position, block.size()};
        if (isTiff(candidate))
            return readTiffTags(candidate);
    }
    return {};
}

ExifTags readHeif(const ByteSource& file, const Box& box) {
    const std::optional<std::vector<std::uint8_t>> payload = bytesOf(box.contents(file), maximumMetaLength);
    if (!payload)
        return {};
    const HeifMeta meta{*payload, box.offset, file.size()};
    const HeifItem* const exif = meta.exif();
    return exif ? readAfterOffset(MemorySource{itemBytes(file, *exif)}) : ExifTags{};
}

ExifTags readCr3(const ByteSource& movie) {
    constexpr std::array<std::uint8_t, 16> canonID{0x85, 0xC0, 0xB6, 0x87, 0x82, 0x0F, 0x11, 0xE0,
                                                   0x81, 0x11, 0xF4, 0xCE, 0x46, 0x2B, 0x6A, 0x48};
    const std::optional<Box> canon = findBox(movie, 0, [&](const Box& box) {
        return box.type == fourCC("uuid") && box.contents(movie).bytesAt<16>(0) == canonID;
    });
    if (!canon)
        return {};
    const SourceRange boxes = canon->contents(movie);
    const std::optional<Box> exif = findBox(boxes, canonID.size(), fourCC("CMT2"));
    const std::optional<Box> gps = findBox(boxes, canonID.size(), fourCC("CMT4"));
    const Box none;
    return readSeparateTiffTags(exif.value_or(none).contents(boxes), gps.value_or(none).contents(boxes));
}

std::vector<std::uint8_t> decompressed(const ByteSource& source) {
    const std::optional<std::vector<std::uint8_t>> input = bytesOf(source, maximumExifLength);
    if (!input)
        return {};
    const std::unique_ptr<BrotliDecoderState, decltype(&BrotliDecoderDestroyInstance)> decoder{
        BrotliDecoderCreateInstance(nullptr, nullptr, nullptr), &BrotliDecoderDestroyInstance};
    std::vector<std::uint8_t> output;
    std::size_t inputLeft = input->size();
    const std::uint8_t* nextInput = input->data();
    BrotliDecoderResult result = BROTLI_DECODER_RESULT_NEEDS_MORE_OUTPUT;
    while (decoder && result == BROTLI_DECODER_RESULT_NEEDS_MORE_OUTPUT &&
           output.size() < maximumExifLength) {
        const std::size_t before = output.size();
        std::size_t outputLeft = 65'536;
        output.resize(before + outputLeft);
        std::uint8_t* nextOutput = output.data() + before;
        result = BrotliDecoderDecompressStream(decoder.get(), &inputLeft, &nextInput, &outputLeft,
                                               &nextOutput, nullptr);
        output.resize(output.size() - outputLeft);
    }
    return output;
}

} // namespace

ExifTags readIsoMediaExif(const ByteSource& file) {
    if (const std::optional<Box> meta = findBox(file, 0, fourCC("meta")))
        return readHeif(file, *meta);
    if (const std::optional<Box> movie = findBox(file, 0, fourCC("moov")))
        return readCr3(movie->contents(file));
    return {};
}

ExifTags readJpegXlExif(const ByteSource& file) {
    const std::optional<Box> box = findBox(file, 0, [&](const Box& candidate) {
        constexpr std::array<std::uint8_t, 4> exif{'E', 'x', 'i', 'f'};
        return candidate.type == fourCC("Exif") ||
               (candidate.type == fourCC("brob") && candidate.contents(file).bytesAt<4>(0) == exif);
    });
    if (!box)
        return {};
    if (box->type == fourCC("Exif"))
        return readAfterOffset(box->contents(file));
    return readAfterOffset(MemorySource{decompressed(SourceRange{file, box->offset + 4, box->length - 4})});
}

} // namespace PhotoSources
