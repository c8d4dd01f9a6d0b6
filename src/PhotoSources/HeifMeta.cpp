// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifMeta.h>

#include <algorithm>

namespace PhotoSources {

namespace {

constexpr std::size_t mostItems = 20'000;
constexpr std::size_t mostExtents = 100'000;
constexpr std::size_t mostExtentsOfAnItem = 256;
constexpr std::size_t mostPropertiesOfAnItem = 256;

using namespace IsoBoxes;

} // namespace

HeifFullBox readFullBox(ByteReader& reader) {
    const std::uint32_t word = reader.u32();
    return {static_cast<std::uint8_t>(word >> 24), word & 0xffffff};
}

HeifMeta::HeifMeta(Bytes payload, std::uint64_t offset, std::uint64_t fileSize)
    : m_file{0, fileSize} {
    ByteReader header(payload);
    readFullBox(header);
    const std::vector<LoadedBox> boxes = boxesIn(header.rest());
    for (const LoadedBox& box : boxes) {
        if (box.type == fourCC("idat"))
            m_itemData = {offset + static_cast<std::uint64_t>(box.payload.data() - payload.data()),
                          box.payload.size()};
    }
    // Items first: the other boxes speak of them.
    for (const LoadedBox& box : boxes) {
        if (box.type == fourCC("iinf"))
            readItemInfos(box.payload);
        else if (box.type == fourCC("pitm"))
            readPrimary(box.payload);
    }
    for (const LoadedBox& box : boxes) {
        if (box.type == fourCC("iloc"))
            readLocations(box.payload);
        else if (box.type == fourCC("iprp"))
            readProperties(box.payload);
        else if (box.type == fourCC("iref"))
            readReferences(box.payload);
    }
}

void HeifMeta::readPrimary(Bytes payload) {
    ByteReader reader(payload);
    const HeifFullBox box = readFullBox(reader);
    m_primary = box.version == 0 ? reader.u16() : reader.u32();
}

void HeifMeta::readItemInfos(Bytes payload) {
    ByteReader reader(payload);
    const HeifFullBox box = readFullBox(reader);
    reader.number(box.version == 0 ? 2 : 4); // the count, which the boxes themselves tell better
    for (const LoadedBox& entry : boxesIn(reader.rest())) {
        if (entry.type != fourCC("infe") || m_items.size() >= mostItems)
            continue;
        ByteReader info(entry.payload);
        const HeifFullBox infe = readFullBox(info);
        if (infe.version < 2)
            continue;
        const HeifItemId id = infe.version == 2 ? info.u16() : info.u32();
        info.u16(); // protection
        const std::uint32_t type = info.u32();
        if (info.failed())
            continue;
        m_items[id].type = type;
        if (type == fourCC("Exif") && !m_exif)
            m_exif = id;
    }
}

void HeifMeta::readLocations(Bytes payload) {
    ByteReader reader(payload);
    const HeifFullBox box = readFullBox(reader);
    if (box.version > 2)
        return;
    const std::uint16_t sizes = reader.u16();
    const std::size_t offsetSize = sizes >> 12, lengthSize = sizes >> 8 & 15, baseSize = sizes >> 4 & 15;
    const std::size_t indexSize = box.version == 0 ? 0 : sizes & 15;
    if (offsetSize > 8 || lengthSize > 8 || baseSize > 8 || indexSize > 8)
        return;
    const std::uint32_t count = box.version < 2 ? reader.u16() : reader.u32();
    std::size_t seen = 0; // an extent may take no bytes at all in the box
    for (std::uint32_t i = 0; i < count && !reader.failed(); ++i) {
        const HeifItemId id = box.version < 2 ? reader.u16() : reader.u32();
        const unsigned method = box.version == 0 ? 0 : reader.u16() & 15;
        // Which file has the data; writers number their own 0 or 1, and no other is ever opened.
        reader.u16();
        const std::uint64_t base = reader.number(baseSize);
        const std::uint16_t extents = reader.u16();
        const auto found = m_items.find(id);
        // In the file (0) or its own data box (1); data inside of other items is not followed.
        const bool isHere = method <= 1;
        const HeifExtent source = method == 0 ? m_file : m_itemData;
        for (std::uint16_t extent = 0; extent < extents && !reader.failed(); ++extent) {
            reader.number(indexSize);
            const std::uint64_t offset = reader.number(offsetSize);
            const std::uint64_t length = reader.number(lengthSize);
            if (++seen > mostExtents)
                return;
            if (reader.failed() || found == m_items.end() || !isHere ||
                found->second.data.size() >= mostExtentsOfAnItem)
                continue;
            if (base > source.length || offset > source.length - base)
                continue;
            const std::uint64_t available = source.length - base - offset;
            // A length of 0 means all the rest. Data that is cut short is handed on as far as it goes.
            found->second.data.push_back(
                {source.offset + base + offset, length == 0 ? available : std::min(length, available)});
        }
    }
}

void HeifMeta::readProperties(Bytes payload) {
    for (const LoadedBox& box : boxesIn(payload)) {
        if (box.type == fourCC("ipco"))
            m_properties = boxesIn(box.payload);
        else if (box.type == fourCC("ipma"))
            readAssociations(box.payload);
    }
}

void HeifMeta::readAssociations(Bytes payload) {
    ByteReader reader(payload);
    const HeifFullBox box = readFullBox(reader);
    const std::uint32_t count = reader.u32();
    for (std::uint32_t i = 0; i < count && !reader.failed(); ++i) {
        const HeifItemId id = box.version < 1 ? reader.u16() : reader.u32();
        const std::uint8_t associations = reader.u8();
        const auto found = m_items.find(id);
        for (std::uint8_t k = 0; k < associations && !reader.failed(); ++k) {
            const std::size_t index = box.flags & 1 ? reader.u16() & 0x7fffU : reader.u8() & 0x7fU;
            if (found != m_items.end() && index > 0 && !reader.failed() &&
                found->second.properties.size() < mostPropertiesOfAnItem)
                found->second.properties.push_back(index - 1);
        }
    }
}

void HeifMeta::readReferences(Bytes payload) {
    ByteReader reader(payload);
    const HeifFullBox box = readFullBox(reader);
    const std::size_t idSize = box.version == 0 ? 2 : 4;
    for (const LoadedBox& reference : boxesIn(reader.rest())) {
        if (reference.type != fourCC("dimg") && reference.type != fourCC("auxl"))
            continue;
        ByteReader ids(reference.payload);
        const auto from = static_cast<HeifItemId>(ids.number(idSize));
        const std::uint16_t count = ids.u16();
        const auto found = m_items.find(from);
        for (std::uint16_t i = 0; i < count && !ids.failed() && found != m_items.end(); ++i) {
            const auto id = static_cast<HeifItemId>(ids.number(idSize));
            if (ids.failed())
                break;
            if (reference.type == fourCC("dimg"))
                found->second.derivedFrom.push_back(id);
            else if (const auto owner = m_items.find(id); owner != m_items.end())
                owner->second.auxiliaries.push_back(from);
        }
    }
}

const HeifItem* HeifMeta::item(HeifItemId id) const {
    const auto found = m_items.find(id);
    return found == m_items.end() ? nullptr : &found->second;
}

} // namespace PhotoSources
