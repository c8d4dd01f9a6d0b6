// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Foundation {

/// A decoded picture: upright, sRGB, 8 bits a channel, interleaved R G B, no padding between rows, opaque
/// (what was transparent shows black). Rows run from top to bottom.
struct Image {
    int width = 0;
    int height = 0;
    /// width * height * 3 bytes.
    std::vector<std::uint8_t> pixels;

    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }

    [[nodiscard]] const std::uint8_t* row(int y) const {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width) * 3;
    }

    friend bool operator==(const Image&, const Image&) = default;
};

} // namespace Foundation
