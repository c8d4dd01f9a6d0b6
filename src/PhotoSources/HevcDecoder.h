// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/HeifContainer.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace PhotoSources {

enum class ChromaLayout { mono, c420, c422, c444 };

/// A decoded HEVC picture's planes: Y, Cb, Cr. Lives as long as the decoder that made it, until its next
/// picture.
struct HevcPlanes {
    struct Plane {
        const std::uint8_t* data = nullptr;
        std::size_t bytesPerRow = 0;
        int width = 0;
        int height = 0;
        /// Samples of more than 8 bits take two bytes, in the machine's order.
        int bits = 8;
    };

    ChromaLayout layout = ChromaLayout::c420;
    std::array<Plane, 3> planes;
    /// As the stream itself says.
    ColourCoding coding;
};

/// Decodes single HEVC pictures with libde265. Owner's thread.
class HevcDecoder {
public:
    /// Pictures with more than `mostPixels` are refused before anything is allocated for them.
    explicit HevcDecoder(std::uint64_t mostPixels);
    ~HevcDecoder();

    [[nodiscard]] std::optional<HevcPlanes> decode(const HeifTile& tile);

private:
    class Context;

    std::uint64_t m_mostPixels;
    std::unique_ptr<Context> m_context;
};

} // namespace PhotoSources
