// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/NetworkFile.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>

namespace Analysis {

namespace {

constexpr const char* remedy = "build Roamly again, or reinstall it, to get it back";

struct Header {
    std::array<char, 8> magic;
    std::uint64_t size;
    std::uint64_t checksum;
};
constexpr std::array<char, 8> magic{'R', 'o', 'a', 'm', 'l', 'y', 'N', '1'};

/// The sum of all 64-bit words, each times an odd number of its own; a shorter last word is filled up with
/// zeros. Multiplying by an odd number loses nothing, so every changed word changes the sum.
std::uint64_t checksum(std::span<const std::byte> bytes) {
    std::uint64_t sum = 0;
    std::uint64_t factor = 1;
    for (std::size_t position = 0; position < bytes.size(); position += sizeof(std::uint64_t), factor += 2) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + position, std::min(sizeof(word), bytes.size() - position));
        sum += word * factor;
    }
    return sum;
}

} // namespace

NetworkFileError NetworkFileError::missing(const std::filesystem::path& file) {
    return NetworkFileError("The file " + file.string() + " is missing or cannot be read; " + remedy + ".");
}

NetworkFileError NetworkFileError::damaged(const std::filesystem::path& file) {
    return NetworkFileError("The file " + file.string() + " is damaged; " + remedy + ".");
}

NetworkFile::NetworkFile(const std::filesystem::path& file) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    if (error || !stream)
        throw NetworkFileError::missing(file);
    Header header{};
    if (size < sizeof(header) || size > std::numeric_limits<std::uint32_t>::max())
        throw NetworkFileError::damaged(file);
    stream.read(reinterpret_cast<char*>(&header), sizeof(header));
    if (!stream || header.magic != magic || header.size != size - sizeof(header))
        throw NetworkFileError::damaged(file);
    m_bytes.resize(header.size);
    stream.read(reinterpret_cast<char*>(m_bytes.data()), static_cast<std::streamsize>(m_bytes.size()));
    if (!stream || checksum(m_bytes) != header.checksum)
        throw NetworkFileError::damaged(file);
}

std::span<const std::byte> NetworkFile::bytes() const {
    return m_bytes;
}

} // namespace Analysis
