// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace PhotoSources {

/// The coded size that an HEVC sequence parameter set announces.
struct HevcSequence {
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    /// `unit` with its two-byte header, without start code. Nothing when it ends too early or contradicts
    /// itself: libde265 refuses those too, but says so on standard error.
    [[nodiscard]] static std::optional<HevcSequence> read(std::span<const std::uint8_t> unit);
};

} // namespace PhotoSources
