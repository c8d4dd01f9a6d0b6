// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Frames {

/// What rows and planes of pixels are aligned to, in bytes.
inline constexpr std::size_t pixelAlignment = 64;

/// `value` rounded up to the next multiple of the alignment.
[[nodiscard]] constexpr std::size_t pixelAligned(std::size_t value) {
    return (value + pixelAlignment - 1) / pixelAlignment * pixelAlignment;
}

/// Aligned memory with undefined contents.
struct AlignedFree {
    void operator()(std::uint8_t* memory) const;
};
using AlignedMemory = std::unique_ptr<std::uint8_t, AlignedFree>;
[[nodiscard]] AlignedMemory allocateAligned(std::size_t size);

/// Memory for frames. What one frame gives back is kept for the next of the same size: fresh memory of this
/// size would come from the kernel page by page, each cleared first. A handful of blocks is kept at the most.
/// Thread-safe.
namespace FrameMemory {

[[nodiscard]] AlignedMemory take(std::size_t size);
void giveBack(AlignedMemory memory, std::size_t size);

} // namespace FrameMemory

} // namespace Frames
