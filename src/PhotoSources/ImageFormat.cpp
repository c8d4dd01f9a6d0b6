// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageFormat.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

namespace PhotoSources {

namespace {

bool startsWith(std::span<const std::uint8_t> bytes, std::string_view text, std::size_t at = 0) {
    return bytes.size() >= at + text.size() && std::memcmp(bytes.data() + at, text.data(), text.size()) == 0;
}

bool hasRawExtension(const std::filesystem::path& path) {
    static constexpr std::array<std::string_view, 32> extensions{
        ".3fr", ".arw", ".bay", ".cap", ".cr2", ".cr3", ".crw", ".dcr", ".dng", ".erf", ".fff",
        ".gpr", ".iiq", ".k25", ".kdc", ".mdc", ".mef", ".mos", ".mrw", ".nef", ".nrw", ".orf",
        ".pef", ".raf", ".raw", ".rw2", ".rwl", ".sr2", ".srf", ".srw", ".x3f", ".ari"};
    std::string extension = path.extension().string();
    std::ranges::transform(extension, extension.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return std::ranges::find(extensions, extension) != extensions.end();
}

/// Walks the directories of a TIFF far enough to see whether they hold a sensor's samples.
class TiffDirectories {
public:
    TiffDirectories(const ImageFile& file, bool bigEndian)
        : m_file(file)
        , m_bigEndian(bigEndian) {}

    [[nodiscard]] bool holdSensorData() {
        std::array<std::uint8_t, 4> first{};
        if (m_file.readAt(4, first) != first.size())
            return false;
        return visit(number(first, 0, 4), 0);
    }

private:
    static constexpr int mostDirectories = 32;
    static constexpr std::uint32_t mostEntries = 1024;
    static constexpr std::uint32_t mostSubDirectories = 16;

    static constexpr std::uint32_t tagPhotometric = 262;
    static constexpr std::uint32_t tagSubDirectories = 330;
    static constexpr std::uint32_t tagDngVersion = 50706;
    static constexpr std::uint32_t colourFilterArray = 32803;
    static constexpr std::uint32_t linearRaw = 34892;
    static constexpr std::uint32_t typeShort = 3;

    [[nodiscard]] std::uint32_t number(std::span<const std::uint8_t> bytes, std::size_t at,
                                       std::size_t count) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < count; ++i)
            value = value << 8 | bytes[m_bigEndian ? at + i : at + count - 1 - i];
        return value;
    }

    bool visit(std::uint32_t offset, int depth) {
        while (offset != 0 && m_visited++ < mostDirectories) {
            std::array<std::uint8_t, 2> countBytes{};
            if (m_file.readAt(offset, countBytes) != countBytes.size())
                return false;
            const std::uint32_t count = number(countBytes, 0, 2);
            if (count > mostEntries)
                return false;
            std::vector<std::uint8_t> entries(std::size_t{count} * 12 + 4);
            entries.resize(m_file.readAt(std::uint64_t{offset} + 2, entries));
            for (std::size_t at = 0; at + 12 <= entries.size(); at += 12) {
                const std::uint32_t tag = number(entries, at, 2);
                const std::uint32_t type = number(entries, at + 2, 2);
                const std::uint32_t values = number(entries, at + 4, 4);
                if (tag == tagDngVersion)
                    return true;
                if (tag == tagPhotometric) {
                    const std::uint32_t value = number(entries, at + 8, type == typeShort ? 2 : 4);
                    if (value == colourFilterArray || value == linearRaw)
                        return true;
                }
                if (tag == tagSubDirectories && depth == 0 && visitChildren(entries, at, values))
                    return true;
            }
            const std::size_t next = std::size_t{count} * 12;
            offset = entries.size() >= next + 4 ? number(entries, next, 4) : 0;
            if (depth > 0)
                return false;
        }
        return false;
    }

    bool visitChildren(std::span<const std::uint8_t> entries, std::size_t at, std::uint32_t values) {
        if (values == 1)
            return visit(number(entries, at + 8, 4), 1);
        std::vector<std::uint8_t> offsets(std::size_t{std::min(values, mostSubDirectories)} * 4);
        offsets.resize(m_file.readAt(number(entries, at + 8, 4), offsets));
        for (std::size_t i = 0; i + 4 <= offsets.size(); i += 4) {
            if (visit(number(offsets, i, 4), 1))
                return true;
        }
        return false;
    }

    const ImageFile& m_file;
    bool m_bigEndian;
    int m_visited = 0;
};

ImageFormat formatOfBoxedFile(std::span<const std::uint8_t> head) {
    static constexpr std::array<std::string_view, 13> brands{"heic", "heix", "heim", "heis", "hevc",
                                                             "hevx", "hevm", "hevs", "mif1", "mif2",
                                                             "msf1", "avif", "avis"};
    const std::size_t declared = static_cast<std::size_t>(head[0]) << 24 |
                                 static_cast<std::size_t>(head[1]) << 16 |
                                 static_cast<std::size_t>(head[2]) << 8 | head[3];
    const std::size_t end = std::min(declared, head.size());
    if (startsWith(head, "crx ", 8))
        return ImageFormat::cameraRaw;
    for (std::size_t at = 8; at + 4 <= end; at += at == 8 ? 8 : 4) {
        if (std::ranges::any_of(brands, [&](std::string_view brand) { return startsWith(head, brand, at); }))
            return ImageFormat::heif;
    }
    return ImageFormat::unknown;
}

bool startsLikeTiff(std::span<const std::uint8_t> head) {
    return startsWith(head, std::string_view("II*\0", 4)) || startsWith(head, std::string_view("MM\0*", 4));
}

bool holdsSensorData(const ImageFile& file, std::span<const std::uint8_t> head) {
    return startsWith(head, "CR", 8) || TiffDirectories(file, head[0] == 'M').holdSensorData();
}

} // namespace

bool isPlainTiff(const ImageFile& file) {
    std::array<std::uint8_t, 12> head{};
    return file.readAt(0, head) == head.size() && startsLikeTiff(head) && !holdsSensorData(file, head);
}

ImageFormat imageFormatOf(const ImageFile& file) {
    using namespace std::string_view_literals;
    std::array<std::uint8_t, 256> buffer{};
    const std::span<const std::uint8_t> head(buffer.data(), file.readAt(0, buffer));
    if (head.size() < 12)
        return ImageFormat::unknown;

    if (startsWith(head, "\xff\xd8\xff"sv))
        return ImageFormat::jpeg;
    if (startsWith(head, "\x89PNG\r\n\x1a\n"sv))
        return ImageFormat::png;
    if (startsWith(head, "GIF87a"sv) || startsWith(head, "GIF89a"sv))
        return ImageFormat::gif;
    if (startsWith(head, "RIFF"sv) && startsWith(head, "WEBP"sv, 8))
        return ImageFormat::webp;
    if (startsWith(head, "\xff\x0a"sv) || startsWith(head, "\0\0\0\x0cJXL \r\n\x87\n"sv))
        return ImageFormat::jpegXL;
    if (startsWith(head, "\0\0\0\x0cjP  \r\n\x87\n"sv))
        return ImageFormat::jpeg2000;
    if (startsWith(head, "ftyp"sv, 4))
        return formatOfBoxedFile(head);

    if (startsLikeTiff(head)) {
        return hasRawExtension(file.path()) || holdsSensorData(file, head) ? ImageFormat::cameraRaw
                                                                           : ImageFormat::tiff;
    }
    if (startsWith(head, "II+\0"sv) || startsWith(head, "MM\0+"sv))
        return ImageFormat::tiff;

    // Makers' own containers: Fujifilm, Olympus, Panasonic, Canon's first, Minolta, Sigma.
    if (startsWith(head, "FUJIFILMCCD-RAW"sv) || startsWith(head, "IIRO"sv) || startsWith(head, "IIRS"sv) ||
        startsWith(head, "MMOR"sv) || startsWith(head, "IIU\0"sv) || startsWith(head, "HEAPCCDR"sv, 6) ||
        startsWith(head, "\0MRM"sv) || startsWith(head, "FOVb"sv))
        return ImageFormat::cameraRaw;
    return hasRawExtension(file.path()) ? ImageFormat::cameraRaw : ImageFormat::unknown;
}

} // namespace PhotoSources
