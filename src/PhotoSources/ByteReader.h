// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace PhotoSources {

/// Reads big-endian numbers off a run of bytes. Reading past the end yields zeros and is remembered, so that
/// a parser checks once, after a group of reads.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes) {}

    [[nodiscard]] bool failed() const { return m_failed; }
    [[nodiscard]] std::size_t remaining() const { return m_bytes.size() - m_at; }

    std::uint64_t number(std::size_t byteCount) {
        if (byteCount > remaining()) {
            m_failed = true;
            m_at = m_bytes.size();
            return 0;
        }
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < byteCount; ++i)
            value = value << 8 | m_bytes[m_at++];
        return value;
    }

    std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
    std::uint64_t u64() { return number(8); }

    std::span<const std::uint8_t> bytes(std::uint64_t count) {
        if (count > remaining()) {
            m_failed = true;
            m_at = m_bytes.size();
            return {};
        }
        const auto result = m_bytes.subspan(m_at, static_cast<std::size_t>(count));
        m_at += static_cast<std::size_t>(count);
        return result;
    }

    std::span<const std::uint8_t> rest() { return bytes(remaining()); }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0;
    bool m_failed = false;
};

} // namespace PhotoSources
