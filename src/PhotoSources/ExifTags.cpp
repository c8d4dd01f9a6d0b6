// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ExifTags.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace PhotoSources {

namespace {

namespace Tag {
constexpr std::uint16_t gpsLatitudeRef = 0x0001;
constexpr std::uint16_t gpsLatitude = 0x0002;
constexpr std::uint16_t gpsLongitudeRef = 0x0003;
constexpr std::uint16_t gpsLongitude = 0x0004;
constexpr std::uint16_t exifDirectory = 0x8769;
constexpr std::uint16_t gpsDirectory = 0x8825;
constexpr std::uint16_t dateTimeOriginal = 0x9003;
constexpr std::uint16_t offsetTimeOriginal = 0x9011;
} // namespace Tag

namespace Type {
constexpr std::uint16_t ascii = 2;
constexpr std::uint16_t longNumber = 4;
constexpr std::uint16_t rational = 5;
constexpr std::uint16_t signedRational = 10;
constexpr std::uint16_t directory = 13;
} // namespace Type

constexpr std::size_t entryLength = 12;
/// No text that can be read as a date, an offset or a reference is longer.
constexpr std::size_t maximumTextLength = 64;

struct Header {
    ByteOrder order = ByteOrder::LittleEndian;
    std::uint32_t firstDirectory = 0;
};

std::optional<Header> headerOf(const ByteSource& source) {
    const auto bytes = source.bytesAt<8>(0);
    if (!bytes || (*bytes)[0] != (*bytes)[1] || ((*bytes)[0] != 'I' && (*bytes)[0] != 'M'))
        return std::nullopt;
    Header header;
    header.order = (*bytes)[0] == 'I' ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
    const auto magic = numberIn<std::uint16_t>(*bytes, 2, header.order);
    constexpr std::uint16_t tiff = 42;
    constexpr std::uint16_t panasonic = 0x0055;
    constexpr std::uint16_t olympus = 0x4F52;
    constexpr std::uint16_t olympusOld = 0x5352;
    if (magic != tiff && magic != panasonic && magic != olympus && magic != olympusOld)
        return std::nullopt;
    header.firstDirectory = numberIn<std::uint32_t>(*bytes, 4, header.order);
    return header;
}

struct Entry {
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    /// The value itself where it fits into four bytes, else its offset.
    std::array<std::uint8_t, 4> value{};
};

/// One directory of a TIFF structure. One that is cut off has the entries that are there.
class Directory {
public:
    Directory(const ByteSource& tiff, ByteOrder order, std::uint64_t offset)
        : m_tiff(tiff)
        , m_order(order) {
        const auto count = tiff.bytesAt<2>(offset);
        if (!count)
            return;
        const std::uint64_t available = (tiff.size() - offset - 2) / entryLength;
        const std::uint64_t length =
            std::min<std::uint64_t>(numberIn<std::uint16_t>(*count, 0, order), available);
        m_entries.resize(static_cast<std::size_t>(length) * entryLength);
        if (!tiff.read(offset + 2, m_entries))
            m_entries.clear();
    }

    [[nodiscard]] std::optional<std::uint64_t> directoryAt(std::uint16_t tag) const {
        const std::optional<Entry> entry = find(tag);
        if (!entry || (entry->type != Type::longNumber && entry->type != Type::directory) ||
            entry->count != 1)
            return std::nullopt;
        return numberIn<std::uint32_t>(entry->value, 0, m_order);
    }

    [[nodiscard]] std::optional<std::string> text(std::uint16_t tag) const {
        const std::optional<Entry> entry = find(tag);
        if (!entry || entry->type != Type::ascii)
            return std::nullopt;
        std::vector<std::uint8_t> bytes(std::min<std::size_t>(entry->count, maximumTextLength));
        if (!readValue(*entry, entry->count, bytes))
            return std::nullopt;
        return std::string{bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)};
    }

    /// Degrees, minutes and seconds, or the first ones of these, as decimal degrees. A fraction without a
    /// denominator is no number.
    [[nodiscard]] std::optional<double> degrees(std::uint16_t tag) const {
        const std::optional<Entry> entry = find(tag);
        if (!entry || (entry->type != Type::rational && entry->type != Type::signedRational) ||
            entry->count == 0)
            return std::nullopt;
        std::vector<std::uint8_t> bytes(std::min<std::size_t>(entry->count, 3) * 8);
        if (!readValue(*entry, std::uint64_t{entry->count} * 8, bytes))
            return std::nullopt;
        double sum = 0;
        double unit = 1;
        for (std::size_t position = 0; position < bytes.size(); position += 8, unit *= 60) {
            const auto numerator = numberIn<std::uint32_t>(bytes, position, m_order);
            const auto denominator = numberIn<std::uint32_t>(bytes, position + 4, m_order);
            if (denominator == 0)
                return std::nullopt;
            sum += entry->type == Type::rational
                       ? numerator / static_cast<double>(denominator) / unit
                       : static_cast<std::int32_t>(numerator) /
                             static_cast<double>(static_cast<std::int32_t>(denominator)) / unit;
        }
        return std::fabs(sum);
    }

private:
    [[nodiscard]] std::optional<Entry> find(std::uint16_t tag) const {
        for (std::size_t position = 0; position < m_entries.size(); position += entryLength) {
            if (numberIn<std::uint16_t>(m_entries, position, m_order) != tag)
                continue;
            Entry entry;
            entry.type = numberIn<std::uint16_t>(m_entries, position + 2, m_order);
            entry.count = numberIn<std::uint32_t>(m_entries, position + 4, m_order);
            std::copy_n(&m_entries[position + 8], entry.value.size(), entry.value.begin());
            return entry;
        }
        return std::nullopt;
    }

    /// The first bytes of a value that is `length` bytes long.
    [[nodiscard]] bool readValue(const Entry& entry, std::uint64_t length,
                                 std::span<std::uint8_t> target) const {
        if (length <= entry.value.size()) {
            std::copy_n(entry.value.begin(), target.size(), target.begin());
            return true;
        }
        return m_tiff.read(numberIn<std::uint32_t>(entry.value, 0, m_order), target);
    }

    const ByteSource& m_tiff;
    ByteOrder m_order;
    std::vector<std::uint8_t> m_entries;
};

void takeExif(const Directory& exif, ExifTags& tags) {
    tags.dateTimeOriginal = exif.text(Tag::dateTimeOriginal);
    tags.offsetTimeOriginal = exif.text(Tag::offsetTimeOriginal);
}

void takeGps(const Directory& gps, ExifTags& tags) {
    tags.latitude = gps.degrees(Tag::gpsLatitude);
    tags.longitude = gps.degrees(Tag::gpsLongitude);
    tags.latitudeRef = gps.text(Tag::gpsLatitudeRef);
    tags.longitudeRef = gps.text(Tag::gpsLongitudeRef);
}

} // namespace

bool isTiff(const ByteSource& source) {
    return headerOf(source).has_value();
}

ExifTags readTiffTags(const ByteSource& tiff) {
    ExifTags tags;
    const std::optional<Header> header = headerOf(tiff);
    if (!header)
        return tags;
    const Directory first{tiff, header->order, header->firstDirectory};
    if (const std::optional<std::uint64_t> exif = first.directoryAt(Tag::exifDirectory))
        takeExif({tiff, header->order, *exif}, tags);
    if (const std::optional<std::uint64_t> gps = first.directoryAt(Tag::gpsDirectory))
        takeGps({tiff, header->order, *gps}, tags);
    return tags;
}

ExifTags readSeparateTiffTags(const ByteSource& exif, const ByteSource& gps) {
    ExifTags tags;
    if (const std::optional<Header> header = headerOf(exif))
        takeExif({exif, header->order, header->firstDirectory}, tags);
    if (const std::optional<Header> header = headerOf(gps))
        takeGps({gps, header->order, header->firstDirectory}, tags);
    return tags;
}

} // namespace PhotoSources
