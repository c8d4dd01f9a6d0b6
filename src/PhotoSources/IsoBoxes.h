// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ByteSource.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace PhotoSources {

/// The boxes of an ISO base media file (ISO/IEC 14496-12): HEIF, JPEG XL and Canon's CR3 are made of them.
namespace IsoBoxes {

using Bytes = std::span<const std::uint8_t>;

/// A box's type, from its four characters.
constexpr std::uint32_t fourCC(const char (&text)[5]) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(text[0])) << 24 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[1])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[2])) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[3]));
}

/// Where a box lies in a source: its contents, without the header.
struct Box {
    std::uint32_t type = 0;
    std::uint64_t offset = 0;
    /// As the file says; it may be more than there is.
    std::uint64_t length = 0;

    [[nodiscard]] SourceRange contents(const ByteSource& source) const { return {source, offset, length}; }
};

/// The first box from `position` on that `accept` takes. A last box that claims more than there is, as in a
/// file that was cut short, is offered like the others.
[[nodiscard]] std::optional<Box> findBox(const ByteSource& source, std::uint64_t position,
                                         const std::function<bool(const Box&)>& accept);
[[nodiscard]] std::optional<Box> findBox(const ByteSource& source, std::uint64_t position,
                                         std::uint32_t type);

/// A box whose contents are in memory.
struct LoadedBox {
    std::uint32_t type = 0;
    Bytes payload;
};

/// All boxes, up to the first whose size does not fit.
[[nodiscard]] std::vector<LoadedBox> boxesIn(Bytes bytes);

} // namespace IsoBoxes

} // namespace PhotoSources
