// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Timeline/KenBurns.h>

#include <cstdint>

namespace Timeline {

namespace {

/// SplitMix64 (Steele, Lea, Flood: "Fast splittable pseudorandom number generators", 2014), as doubles in [0,
/// 1).
class UnitSequence {
public:
    explicit UnitSequence(std::uint64_t seed)
        : m_state(seed) {}

    double next() {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        z ^= z >> 31;
        return static_cast<double>(z >> 11) * 0x1p-53;
    }

private:
    std::uint64_t m_state;
};

std::uint64_t seedValue(const Foundation::Uuid& id) {
    std::uint64_t seed = 0;
    for (std::size_t i = 0; i < 8; ++i)
        seed = seed << 8 | static_cast<std::uint64_t>(id.bytes[i] ^ id.bytes[i + 8]);
    return seed;
}

double interpolated(double from, double to, double progress) {
    return from + progress * (to - from);
}

} // namespace

KenBurnsTransform::Sample KenBurnsTransform::sample(double progress) const {
    const double p = progress > 0 ? (progress < 1 ? progress : 1) : 0;
    return {.scale = interpolated(startScale, endScale, p),
            .offset = {.width = interpolated(startOffset.width, endOffset.width, p),
                       .height = interpolated(startOffset.height, endOffset.height, p)}};
}

KenBurnsTransform KenBurns::transform(const Foundation::Uuid& seed) {
    UnitSequence units{seedValue(seed)};
    const bool zoomsIn = units.next() < 0.5;
    const double scale = 1.08 + units.next() * 0.04;
    const auto nextComponent = [&] { return (units.next() - 0.5) * 0.06; };
    KenBurnsTransform motion;
    motion.startScale = zoomsIn ? 1.0 : scale;
    motion.endScale = zoomsIn ? scale : 1.0;
    motion.startOffset.width = nextComponent();
    motion.startOffset.height = nextComponent();
    motion.endOffset.width = nextComponent();
    motion.endOffset.height = nextComponent();
    return motion;
}

} // namespace Timeline
