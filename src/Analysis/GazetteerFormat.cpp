// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/GazetteerFormat.h>

#include <bit>
#include <cstring>

namespace Analysis::GazetteerFormat {

std::uint64_t checksum(std::span<const std::byte> bytes) {
    // Four lanes of multiply and rotate, each step a bijection of its lane, so that no single change is lost.
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    constexpr std::size_t lanes = 4;
    std::array<std::uint64_t, lanes> state{1, 2, 3, 4};
    const auto step = [](std::uint64_t& lane, std::uint64_t word) {
        lane = std::rotl((lane ^ word) * odd, 29);
    };
    while (bytes.size() >= lanes * sizeof(std::uint64_t)) {
        std::array<std::uint64_t, lanes> words;
        std::memcpy(words.data(), bytes.data(), sizeof(words));
        for (std::size_t lane = 0; lane < lanes; ++lane)
            step(state[lane], words[lane]);
        bytes = bytes.subspan(sizeof(words));
    }
    std::uint64_t result = bytes.size();
    for (const std::byte byte : bytes)
        step(result, std::to_integer<std::uint64_t>(byte));
    for (const std::uint64_t lane : state)
        step(result, lane);
    return result ^ (result >> 32);
}

} // namespace Analysis::GazetteerFormat
