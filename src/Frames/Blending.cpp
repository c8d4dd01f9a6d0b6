// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Blending.h>

#include <algorithm>
#include <cmath>

namespace Frames::Blending {

namespace {

/// `from` + (`to` - `from`) * `share`: four times the difference times the share is the product in units of
/// 1 / 65536, and its two 16-bit halves hold the whole part and, in the lower one's top bit, what to round
/// by. That way a vector register holds twice as many samples as 32-bit products would allow.
std::uint8_t between(std::uint8_t from, std::uint8_t to, Share share) {
    static_assert(whole == 1 << 14);
    const auto difference = static_cast<std::int16_t>((to - from) * 4);
    const auto high = static_cast<std::int16_t>((difference * share) >> 16);
    const auto low = static_cast<std::uint16_t>(static_cast<std::uint16_t>(difference) *
                                                static_cast<std::uint16_t>(share));
    return static_cast<std::uint8_t>(from + high + (low >> 15));
}

/// value / 255, for values up to 65151.
std::uint8_t dividedBy255(std::uint16_t value) {
    const auto biased = static_cast<std::uint16_t>(value + 128);
    return static_cast<std::uint8_t>(static_cast<std::uint16_t>(biased + (biased >> 8)) >> 8);
}

} // namespace

Share share(double value) {
    // Not a number counts as nothing.
    return value > 0 ? static_cast<Share>(std::lround(std::min(value, 1.0) * whole)) : Share{0};
}

void mix(std::uint8_t* below, const std::uint8_t* over, std::size_t count, Share share) {
    for (std::size_t i = 0; i < count; ++i)
        below[i] = between(below[i], over[i], share);
}

void fade(std::uint8_t* samples, std::size_t count, std::uint8_t ground, Share share) {
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = between(ground, samples[i], share);
}

void shade(std::uint8_t* samples, const std::uint8_t* alpha, std::size_t count, std::uint8_t ground) {
    for (std::size_t i = 0; i < count; ++i)
        samples[i] =
            dividedBy255(static_cast<std::uint16_t>(samples[i] * (255 - alpha[i]) + ground * alpha[i]));
}

void paint(std::uint8_t* samples, const std::uint8_t* alpha, const std::uint16_t* paint, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = dividedBy255(static_cast<std::uint16_t>(samples[i] * (255 - alpha[i]) + paint[i]));
}

} // namespace Frames::Blending
