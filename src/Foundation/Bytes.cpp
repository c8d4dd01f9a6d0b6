// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bytes.h>

#include <algorithm>
#include <array>

namespace Foundation {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> makeReverseAlphabet() {
    std::array<std::int8_t, 256> reverse{};
    reverse.fill(-1);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        reverse[static_cast<unsigned char>(alphabet[i])] = static_cast<std::int8_t>(i);
    return reverse;
}

constexpr std::array<std::int8_t, 256> reverseAlphabet = makeReverseAlphabet();

} // namespace

std::string base64Encoded(const Bytes& bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = std::uint32_t{bytes[i]} << 16;
        if (count > 1)
            group |= std::uint32_t{bytes[i + 1]} << 8;
        if (count > 2)
            group |= std::uint32_t{bytes[i + 2]};
        text += alphabet[group >> 18];
        text += alphabet[(group >> 12) & 63];
        text += count > 1 ? alphabet[(group >> 6) & 63] : '=';
        text += count > 2 ? alphabet[group & 63] : '=';
    }
    return text;
}

std::optional<Bytes> base64Decoded(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    Bytes bytes;
    bytes.reserve(text.size() / 4 * 3);
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const bool last = i + 4 == text.size();
        const std::size_t padding = last && text[i + 3] == '=' ? (text[i + 2] == '=' ? 2 : 1) : 0;
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 4; ++j) {
            const std::int8_t value =
                j >= 4 - padding ? std::int8_t{0} : reverseAlphabet[static_cast<unsigned char>(text[i + j])];
            if (value < 0)
                return std::nullopt;
            group = group << 6 | static_cast<std::uint32_t>(value);
        }
        bytes.push_back(static_cast<std::uint8_t>(group >> 16));
        if (padding < 2)
            bytes.push_back(static_cast<std::uint8_t>(group >> 8 & 255));
        if (padding < 1)
            bytes.push_back(static_cast<std::uint8_t>(group & 255));
    }
    return bytes;
}

bool isValidUtf8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = 0;
        std::uint32_t minimum = 0;
        std::uint32_t codePoint = 0;
        if (lead < 0x80) {
            ++i;
            continue;
        }
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            minimum = 0x80;
            codePoint = lead & 0x1FU;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            minimum = 0x800;
            codePoint = lead & 0x0FU;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            minimum = 0x10000;
            codePoint = lead & 0x07U;
        } else {
            return false;
        }
        if (i + length > text.size())
            return false;
        for (std::size_t j = 1; j < length; ++j) {
            const auto next = static_cast<unsigned char>(text[i + j]);
            if ((next & 0xC0U) != 0x80U)
                return false;
            codePoint = codePoint << 6 | (next & 0x3FU);
        }
        if (codePoint < minimum || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
            return false;
        i += length;
    }
    return true;
}

} // namespace Foundation
