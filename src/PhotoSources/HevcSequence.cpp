// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HevcSequence.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace PhotoSources {

namespace {

/// Reads bits, leaving out the bytes that keep start codes from appearing inside a unit.
class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes) {}

    [[nodiscard]] bool failed() const { return m_failed; }

    std::uint32_t bits(int count) {
        std::uint32_t value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 1 | bit();
        return value;
    }

    void skip(int count) {
        for (int i = 0; i < count; ++i)
            bit();
    }

    /// An Exp-Golomb number.
    std::uint32_t unsignedNumber() {
        int zeros = 0;
        while (bit() == 0) {
            if (m_failed || ++zeros > 31) {
                m_failed = true;
                return 0;
            }
        }
        return (std::uint32_t{1} << zeros) - 1 + bits(zeros);
    }

private:
    std::uint32_t bit() {
        if (m_left == 0) {
            if (m_zeros >= 2 && m_at < m_bytes.size() && m_bytes[m_at] == 3) {
                ++m_at;
                m_zeros = 0;
            }
            if (m_at >= m_bytes.size()) {
                m_failed = true;
                return 0;
            }
            m_current = m_bytes[m_at++];
            m_zeros = m_current == 0 ? m_zeros + 1 : 0;
            m_left = 8;
        }
        --m_left;
        return m_current >> m_left & 1U;
    }

    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0;
    int m_zeros = 0;
    std::uint8_t m_current = 0;
    int m_left = 0;
    bool m_failed = false;
};

void skipProfileTierLevel(BitReader& reader, std::uint32_t maxSubLayersMinus1) {
    reader.skip(88); // the general profile
    reader.skip(8);  // and level
    std::array<bool, 8> profilePresent{}, levelPresent{};
    for (std::uint32_t i = 0; i < maxSubLayersMinus1; ++i) {
        profilePresent[i] = reader.bits(1) != 0;
        levelPresent[i] = reader.bits(1) != 0;
    }
    if (maxSubLayersMinus1 > 0)
        reader.skip(static_cast<int>(8 - maxSubLayersMinus1) * 2);
    for (std::uint32_t i = 0; i < maxSubLayersMinus1; ++i) {
        reader.skip(profilePresent[i] ? 88 : 0);
        reader.skip(levelPresent[i] ? 8 : 0);
    }
}

} // namespace

std::optional<HevcSequence> HevcSequence::read(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 4)
        return std::nullopt;
    BitReader reader(bytes.subspan(2));
    reader.skip(4); // video parameter set id
    const std::uint32_t maxSubLayersMinus1 = reader.bits(3);
    reader.skip(1); // temporal id nesting
    skipProfileTierLevel(reader, maxSubLayersMinus1);
    reader.unsignedNumber(); // id
    if (reader.unsignedNumber() == 3)
        reader.skip(1); // separate colour planes
    HevcSequence sequence;
    sequence.width = reader.unsignedNumber();
    sequence.height = reader.unsignedNumber();
    if (reader.bits(1) != 0) { // conformance window
        for (int side = 0; side < 4; ++side)
            reader.unsignedNumber();
    }
    const std::uint32_t lumaBits = 8 + reader.unsignedNumber();
    const std::uint32_t chromaBits = 8 + reader.unsignedNumber();
    reader.unsignedNumber(); // picture order count
    const std::uint32_t firstSubLayer = reader.bits(1) != 0 ? 0 : maxSubLayersMinus1;
    for (std::uint32_t layer = firstSubLayer; layer <= maxSubLayersMinus1; ++layer) {
        for (int limit = 0; limit < 3; ++limit)
            reader.unsignedNumber();
    }
    // Sizes of blocks, as powers of two.
    const std::uint64_t smallestCoding = std::uint64_t{3} + reader.unsignedNumber();
    const std::uint64_t largestCoding = smallestCoding + reader.unsignedNumber();
    const std::uint64_t smallestTransform = std::uint64_t{2} + reader.unsignedNumber();
    const std::uint64_t largestTransform = smallestTransform + reader.unsignedNumber();
    const std::uint32_t interDepth = reader.unsignedNumber();
    const std::uint32_t intraDepth = reader.unsignedNumber();
    if (reader.failed() || sequence.width == 0 || sequence.height == 0 || lumaBits > 16 || chromaBits > 16)
        return std::nullopt;
    if (largestCoding > 6 || smallestTransform >= smallestCoding ||
        largestTransform > std::min<std::uint64_t>(largestCoding, 5) ||
        interDepth > largestCoding - smallestTransform || intraDepth > largestCoding - smallestTransform)
        return std::nullopt;
    const std::uint32_t block = std::uint32_t{1} << smallestCoding;
    if (sequence.width % block != 0 || sequence.height % block != 0)
        return std::nullopt;
    return sequence;
}

} // namespace PhotoSources
