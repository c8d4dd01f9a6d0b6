// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace PhotoSources {

/// Bytes from outside that can be read at any position and never beyond their end.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// Fills all of `target`, or returns false.
    [[nodiscard]] virtual bool read(std::uint64_t offset, std::span<std::uint8_t> target) const = 0;

    template <std::size_t length>
    [[nodiscard]] std::optional<std::array<std::uint8_t, length>> bytesAt(std::uint64_t offset) const {
        std::array<std::uint8_t, length> bytes;
        if (!read(offset, bytes))
            return std::nullopt;
        return bytes;
    }

protected:
    ByteSource() = default;
    ByteSource(const ByteSource&) = default;
    ByteSource& operator=(const ByteSource&) = default;
};

/// A part of another source, which must outlive it; cut off where the other ends.
class SourceRange final : public ByteSource {
public:
    SourceRange(const ByteSource& whole, std::uint64_t offset, std::uint64_t length)
        : m_whole(whole)
        , m_offset(offset < whole.size() ? offset : whole.size())
        , m_size(length < whole.size() - m_offset ? length : whole.size() - m_offset) {}

    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> target) const override {
        return offset <= m_size && target.size() <= m_size - offset &&
               m_whole.read(m_offset + offset, target);
    }

private:
    const ByteSource& m_whole;
    std::uint64_t m_offset;
    std::uint64_t m_size;
};

/// Bytes of somebody else, who must outlive it.
class BorrowedMemory final : public ByteSource {
public:
    explicit BorrowedMemory(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes) {}

    [[nodiscard]] std::uint64_t size() const override { return m_bytes.size(); }
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> target) const override {
        if (offset > m_bytes.size() || target.size() > m_bytes.size() - offset)
            return false;
        std::ranges::copy(m_bytes.subspan(static_cast<std::size_t>(offset), target.size()), target.begin());
        return true;
    }

private:
    std::span<const std::uint8_t> m_bytes;
};

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::vector<std::uint8_t> bytes)
        : m_bytes(std::move(bytes)) {}

    [[nodiscard]] std::uint64_t size() const override { return m_bytes.size(); }
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> target) const override {
        return BorrowedMemory{m_bytes}.read(offset, target);
    }

private:
    std::vector<std::uint8_t> m_bytes;
};

enum class ByteOrder { LittleEndian, BigEndian };

template <typename Number>
[[nodiscard]] Number numberIn(std::span<const std::uint8_t> bytes, std::size_t position, ByteOrder order) {
    Number number = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        const std::size_t shift = order == ByteOrder::LittleEndian ? i : sizeof(Number) - 1 - i;
        number = static_cast<Number>(number | static_cast<Number>(bytes[position + i]) << (8 * shift));
    }
    return number;
}

[[nodiscard]] inline std::uint16_t bigEndian16(std::span<const std::uint8_t> bytes, std::size_t position) {
    return numberIn<std::uint16_t>(bytes, position, ByteOrder::BigEndian);
}

[[nodiscard]] inline std::uint32_t bigEndian32(std::span<const std::uint8_t> bytes, std::size_t position) {
    return numberIn<std::uint32_t>(bytes, position, ByteOrder::BigEndian);
}

[[nodiscard]] inline std::uint64_t bigEndian64(std::span<const std::uint8_t> bytes, std::size_t position) {
    return numberIn<std::uint64_t>(bytes, position, ByteOrder::BigEndian);
}

} // namespace PhotoSources
