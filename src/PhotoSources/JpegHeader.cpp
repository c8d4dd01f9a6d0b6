// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/JpegHeader.h>

#include <algorithm>
#include <array>
#include <vector>

namespace PhotoSources {

namespace {

constexpr std::uint8_t startOfScan = 0xda;

bool isFrameHeader(std::uint8_t marker) {
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

} // namespace

std::optional<JpegHeader> JpegHeader::read(const ImageFile& file) {
    constexpr int mostSegments = 4096;
    std::uint64_t at = 2;
    for (int segment = 0; segment < mostSegments; ++segment) {
        std::array<std::uint8_t, 10 + 4 * 3> bytes{};
        if (file.readAt(at, bytes) < 10)
            return std::nullopt;
        if (bytes[0] != 0xff)
            return std::nullopt;
        const std::uint8_t marker = bytes[1];
        if (marker == 0xff) { // fill
            ++at;
            continue;
        }
        if (marker == 0x01 || (marker >= 0xd0 && marker <= 0xd8)) {
            at += 2;
            continue;
        }
        if (marker == startOfScan || marker == 0xd9)
            return std::nullopt;
        if (isFrameHeader(marker)) {
            JpegHeader header;
            header.height = bytes[5] << 8 | bytes[6];
            header.width = bytes[7] << 8 | bytes[8];
            header.progressive = (marker & 3) == 2;
            const int components = std::min<int>(bytes[9], 4);
            int widest = 1, tallest = 1, blocks = 0;
            for (int i = 0; i < components; ++i) {
                const std::uint8_t sampling = bytes[std::size_t{11} + 3 * static_cast<std::size_t>(i)];
                const int across = sampling >> 4, down = sampling & 15;
                widest = std::max(widest, across);
                tallest = std::max(tallest, down);
                blocks += across * down;
            }
            header.coefficients =
                static_cast<std::uint64_t>(header.width) * static_cast<std::uint64_t>(header.height) *
                static_cast<std::uint64_t>(blocks) / static_cast<std::uint64_t>(widest * tallest);
            return header;
        }
        at += 2 + (static_cast<std::uint64_t>(bytes[2]) << 8 | bytes[3]);
    }
    return std::nullopt;
}

int countJpegScans(const ImageFile& file, int most) {
    std::vector<std::uint8_t> chunk(std::size_t{1} << 18);
    int scans = 0;
    bool afterMark = false;
    for (std::uint64_t at = 0; scans < most;) {
        const std::size_t count = file.readAt(at, chunk);
        if (count == 0)
            break;
        for (std::size_t i = 0; i < count; ++i) {
            scans += afterMark && chunk[i] == startOfScan ? 1 : 0;
            afterMark = chunk[i] == 0xff;
        }
        at += count;
    }
    return std::min(scans, most);
}

} // namespace PhotoSources
