// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Uuid.h>

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace Foundation {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

constexpr bool isHyphenPosition(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> hexValue(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<std::uint8_t>(c - '0');
    if (c >= 'a' && c <= 'f')
        return static_cast<std::uint8_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F')
        return static_cast<std::uint8_t>(c - 'A' + 10);
    return std::nullopt;
}

} // namespace

Uuid Uuid::random() {
    Uuid id;
    // Not std::random_device: it asks the processor for each word, which takes longer than reading a photo's
    // metadata.
    if (::getentropy(id.bytes.data(), id.bytes.size()) != 0)
        throw std::system_error(errno, std::generic_category(), "random numbers");
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0FU) | 0x40U);
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3FU) | 0x80U);
    return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != 36)
        return std::nullopt;
    Uuid id;
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isHyphenPosition(i)) {
            if (text[i] != '-')
                return std::nullopt;
            continue;
        }
        const std::optional<std::uint8_t> value = hexValue(text[i]);
        if (!value)
            return std::nullopt;
        std::uint8_t& byte = id.bytes[nibble / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | *value);
        ++nibble;
    }
    return id;
}

std::string Uuid::text() const {
    std::string result;
    result.reserve(36);
    for (const std::uint8_t byte : bytes) {
        if (isHyphenPosition(result.size()))
            result += '-';
        result += digits[byte >> 4];
        result += digits[byte & 15];
    }
    return result;
}

} // namespace Foundation

std::size_t std::hash<Foundation::Uuid>::operator()(const Foundation::Uuid& id) const noexcept {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::memcpy(&high, id.bytes.data(), sizeof high);
    std::memcpy(&low, id.bytes.data() + sizeof high, sizeof low);
    return static_cast<std::size_t>(high ^ (low * 0x9E3779B97F4A7C15ULL));
}
