// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/IsoBoxes.h>

namespace PhotoSources::IsoBoxes {

namespace {

/// Far more boxes than any real file has at one level; a hostile one must not keep us busy.
constexpr int mostBoxes = 65'536;

} // namespace

std::optional<Box> findBox(const ByteSource& source, std::uint64_t position,
                           const std::function<bool(const Box&)>& accept) {
    for (int i = 0; i < mostBoxes; ++i) {
        const auto header = source.bytesAt<8>(position);
        if (!header)
            return std::nullopt;
        std::uint64_t headerLength = 8;
        std::uint64_t length = bigEndian32(*header, 0);
        if (length == 1) {
            const auto longLength = source.bytesAt<8>(position + 8);
            if (!longLength)
                return std::nullopt;
            headerLength = 16;
            length = bigEndian64(*longLength, 0);
        } else if (length == 0) {
            length = source.size() - position;
        }
        if (length < headerLength)
            return std::nullopt;
        const Box box{bigEndian32(*header, 4), position + headerLength, length - headerLength};
        if (accept(box))
            return box;
        if (length > source.size() - position)
            return std::nullopt;
        position += length;
    }
    return std::nullopt;
}

std::optional<Box> findBox(const ByteSource& source, std::uint64_t position, std::uint32_t type) {
    return findBox(source, position, [type](const Box& box) { return box.type == type; });
}

std::vector<LoadedBox> boxesIn(Bytes bytes) {
    std::vector<LoadedBox> boxes;
    // None is taken, so all are seen.
    static_cast<void>(findBox(BorrowedMemory{bytes}, 0, [&](const Box& box) {
        if (box.length <= bytes.size() - box.offset)
            boxes.push_back({box.type, bytes.subspan(static_cast<std::size_t>(box.offset),
                                                     static_cast<std::size_t>(box.length))});
        return false;
    }));
    return boxes;
}

} // namespace PhotoSources::IsoBoxes
