#include <PhotoSources/BoxedExif.h>

#include <brotli/decode.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace PhotoSources {

namespace {

/// Far more boxes than any real file has at one level; a hostile one must not keep us busy.
constexpr int maximumBoxes = 65'536;
/// EXIF data holds a thumbnail and a maker's notes at most.
constexpr std::size_t maximumExifLength = 8 << 20;

using FourCharacters = std::array<char, 4>;

struct Box {
    FourCharacters type{};
    std::uint64_t offset = 0;
    std::uint64_t length = 0;

    [[nodiscard]] bool is(std::string_view name) const {
        return std::string_view{type.data(), type.size()} == name;
    }
    [[nodiscard]] SourceRange contents(const ByteSource& source) const { return {source, offset, length}; }
};

/// The first box from `position` on that `accept` takes.
std::optional<Box> findBox(const ByteSource& source, std::uint64_t position,
                           const std::function<bool(const Box&)>& accept) {
    for (int i = 0; i < maximumBoxes; ++i) {
        const auto header = source.bytesAt<8>(position);
        if (!header)
            return std::nullopt;
        std::uint64_t headerLength = 8;
        std::uint64_t length = bigEndian32(*header, 0);
        if (length == 1) {
            const auto longLength = source.bytesAt<8>(position + 8);
            if (!longLength)
                return std::nullopt;
            headerLength = 16;
            length = bigEndian64(*longLength, 0);
        } else if (length == 0) {
            length = source.size() - position;
        }
        if (length < headerLength)
            return std::nullopt;
        Box box;
        std::copy_n(header->begin() + 4, 4, box.type.begin());
        box.offset = position + headerLength;
        box.length = length - headerLength;
        if (accept(box))
            return box;
        if (length > source.size() - position)
            return std::nullopt;
        position += length;
    }
    return std::nullopt;
}

std::optional<Box> findBox(const ByteSource& source, std::uint64_t position, std::string_view name) {
    return findBox(source, position, [name](const Box& box) { return box.is(name); });
}

/// Reads big-endian numbers one after the other; once one is missing, all are zero and `isGood` is false.
class NumberReader {
public:
    explicit NumberReader(const ByteSource& source)
        : m_source(source) {}

    [[nodiscard]] bool isGood() const { return m_isGood; }

    [[nodiscard]] std::uint64_t next(std::size_t length) {
        std::array<std::uint8_t, 8> bytes{};
        const std::span<std::uint8_t> target{bytes.data() + (8 - length), length};
        m_isGood = m_isGood && m_source.read(m_position, target);
        m_position += length;
        return m_isGood ? bigEndian64(bytes, 0) : 0;
    }

private:
    const ByteSource& m_source;
    std::uint64_t m_position = 0;
    bool m_isGood = true;
};

/// The number of the item that holds EXIF data, from the list of items.
std::optional<std::uint64_t> exifItem(const ByteSource& itemInfo) {
    NumberReader reader{itemInfo};
    const std::uint64_t version = reader.next(4) >> 24;
    std::optional<std::uint64_t> item;
    findBox(itemInfo, version == 0 ? 6 : 8, [&](const Box& box) {
        if (!box.is("infe"))
            return false;
        const SourceRange contents = box.contents(itemInfo);
        NumberReader entry{contents};
        const std::uint64_t entryVersion = entry.next(4) >> 24;
        if (entryVersion != 2 && entryVersion != 3)
            return false;
        const std::uint64_t id = entry.next(entryVersion == 2 ? 2 : 4);
        [[maybe_unused]] const std::uint64_t protection = entry.next(2);
        constexpr std::uint64_t exif = 0x45786966; // "Exif"
        if (entry.next(4) != exif || !entry.isGood())
            return false;
        item = id;
        return true;
    });
    return item;
}

/// The bytes of an item, put together from the places the item location box names.
std::vector<std::uint8_t> itemBytes(const ByteSource& file, const ByteSource& meta,
                                    const ByteSource& itemLocation, std::uint64_t item) {
    NumberReader reader{itemLocation};
    const std::uint64_t version = reader.next(4) >> 24;
    const std::uint64_t sizes = reader.next(2);
    const std::size_t offsetSize = sizes >> 12 & 15;
    const std::size_t lengthSize = sizes >> 8 & 15;
    const std::size_t baseOffsetSize = sizes >> 4 & 15;
    const std::size_t indexSize = version == 0 ? 0 : sizes & 15;
    if (version > 2 || std::max({offsetSize, lengthSize, baseOffsetSize, indexSize}) > 8)
        return {};
    const std::size_t idSize = version < 2 ? 2 : 4;
    const std::uint64_t itemCount = reader.next(idSize);
    for (std::uint64_t i = 0; i < itemCount && reader.isGood(); ++i) {
        const bool isWanted = reader.next(idSize) == item;
        const std::uint64_t method = version == 0 ? 0 : reader.next(2) & 15;
        [[maybe_unused]] const std::uint64_t dataReference = reader.next(2);
        const std::uint64_t baseOffset = reader.next(baseOffsetSize);
        const std::uint64_t extentCount = reader.next(2);
        constexpr std::uint64_t inItemData = 1;
        const std::optional<Box> itemData = method == inItemData ? findBox(meta, 4, "idat") : std::nullopt;
        if (isWanted && (method > inItemData || (method == inItemData && !itemData)))
            return {};
        const SourceRange origin = itemData ? itemData->contents(meta) : SourceRange{file, 0, file.size()};
        std::vector<std::uint8_t> bytes;
        for (std::uint64_t extent = 0; extent < extentCount && reader.isGood(); ++extent) {
            [[maybe_unused]] const std::uint64_t index = reader.next(indexSize);
            const std::uint64_t offset = reader.next(offsetSize);
            std::uint64_t length = reader.next(lengthSize);
            if (!isWanted)
                continue;
            if (!reader.isGood() || offset > origin.size() || baseOffset > origin.size() - offset)
                return {};
            const std::uint64_t available = origin.size() - baseOffset - offset;
            length = std::min(length == 0 ? available : length, available);
            const std::size_t before = bytes.size();
            bytes.resize(std::min(before + static_cast<std::size_t>(length), maximumExifLength));
            if (!origin.read(baseOffset + offset, std::span{bytes}.subspan(before)))
                return {};
        }
        if (isWanted)
            return bytes;
    }
    return {};
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

ExifTags readHeif(const ByteSource& file, const ByteSource& meta) {
    constexpr std::uint64_t versionAndFlags = 4;
    const std::optional<Box> itemInfo = findBox(meta, versionAndFlags, "iinf");
    const std::optional<Box> itemLocation = findBox(meta, versionAndFlags, "iloc");
    if (!itemInfo || !itemLocation)
        return {};
    const std::optional<std::uint64_t> item = exifItem(itemInfo->contents(meta));
    if (!item)
        return {};
    return readAfterOffset(MemorySource{itemBytes(file, meta, itemLocation->contents(meta), *item)});
}

ExifTags readCr3(const ByteSource& movie) {
    constexpr std::array<std::uint8_t, 16> canonID{0x85, 0xC0, 0xB6, 0x87, 0x82, 0x0F, 0x11, 0xE0,
                                                   0x81, 0x11, 0xF4, 0xCE, 0x46, 0x2B, 0x6A, 0x48};
    const std::optional<Box> canon = findBox(movie, 0, [&](const Box& box) {
        return box.is("uuid") && box.contents(movie).bytesAt<16>(0) == canonID;
    });
    if (!canon)
        return {};
    const SourceRange boxes = canon->contents(movie);
    const std::optional<Box> exif = findBox(boxes, canonID.size(), "CMT2");
    const std::optional<Box> gps = findBox(boxes, canonID.size(), "CMT4");
    const Box none;
    return readSeparateTiffTags(exif.value_or(none).contents(boxes), gps.value_or(none).contents(boxes));
}

std::vector<std::uint8_t> decompressed(const ByteSource& source) {
    if (source.size() > maximumExifLength)
        return {};
    std::vector<std::uint8_t> input(static_cast<std::size_t>(source.size()));
    if (!source.read(0, input))
        return {};
    const std::unique_ptr<BrotliDecoderState, decltype(&BrotliDecoderDestroyInstance)> decoder{
        BrotliDecoderCreateInstance(nullptr, nullptr, nullptr), &BrotliDecoderDestroyInstance};
    std::vector<std::uint8_t> output;
    std::size_t inputLeft = input.size();
    const std::uint8_t* nextInput = input.data();
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
    if (const std::optional<Box> meta = findBox(file, 0, "meta"))
        return readHeif(file, meta->contents(file));
    if (const std::optional<Box> movie = findBox(file, 0, "moov"))
        return readCr3(movie->contents(file));
    return {};
}

ExifTags readJpegXlExif(const ByteSource& file) {
    const std::optional<Box> box = findBox(file, 0, [&](const Box& candidate) {
        constexpr std::array<std::uint8_t, 4> exif{'E', 'x', 'i', 'f'};
        return candidate.is("Exif") ||
               (candidate.is("brob") && candidate.contents(file).bytesAt<4>(0) == exif);
    });
    if (!box)
        return {};
    if (box->is("Exif"))
        return readAfterOffset(box->contents(file));
    return readAfterOffset(MemorySource{decompressed(SourceRange{file, box->offset + 4, box->length - 4})});
}

} // namespace PhotoSources
