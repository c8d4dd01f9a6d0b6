// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/FrameMemory.h>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace Frames {

AlignedMemory allocateAligned(std::size_t size) {
    return AlignedMemory(static_cast<std::uint8_t*>(::operator new (size, std::align_val_t{pixelAlignment})));
}

void AlignedFree::operator()(std::uint8_t* memory) const {
    ::operator delete (memory, std::align_val_t{pixelAlignment});
}

namespace FrameMemory {

namespace {

struct Block {
    AlignedMemory memory;
    std::size_t size = 0;
};

/// Blocks between two uses, the most recently returned last.
struct Shelf {
    static constexpr std::size_t capacity = 4;

    Shelf() { blocks.reserve(capacity + 1); }

    std::mutex mutex;
    std::vector<Block> blocks;
};

/// Never destroyed: a frame may outlive every other static object.
Shelf& shelf() {
    static Shelf* const instance = new Shelf;
    return *instance;
}

} // namespace

AlignedMemory take(std::size_t size) {
    {
        Shelf& from = shelf();
        const std::scoped_lock lock(from.mutex);
        const auto found = std::find_if(from.blocks.rbegin(), from.blocks.rend(),
                                        [size](const Block& block) { return block.size == size; });
        if (found != from.blocks.rend()) {
            AlignedMemory memory = std::move(found->memory);
            from.blocks.erase(std::next(found).base());
            return memory;
        }
    }
    return allocateAligned(size);
}

void giveBack(AlignedMemory memory, std::size_t size) {
    Block surplus;
    Shelf& to = shelf();
    const std::scoped_lock lock(to.mutex);
    to.blocks.push_back({std::move(memory), size});
    if (to.blocks.size() > Shelf::capacity) {
        surplus = std::move(to.blocks.front());
        to.blocks.erase(to.blocks.begin());
    }
}

} // namespace FrameMemory

} // namespace Frames
