#include <PhotoSources/HeifMeta.h>

#include <algorithm>
#include <limits>

namespace PhotoSources {

namespace {

constexpr std::size_t mostItems = 20'000;
constexpr std::size_t mostBoxes = 100'000;
constexpr std::size_t mostExtents = 100'000;
constexpr std::size_t mostExtentsOfAnItem = 256;
constexpr std::size_t mostPropertiesOfAnItem = 256;

using namespace HeifBoxes;

/// The next box; nothing at the end, or when its size does not fit. A last box that claims more than there
/// is, as in a file that was cut short, ends with the file.
std::optional<Box> nextBox(ByteReader& reader, bool cutShortIsFine = false) {
    if (reader.remaining() < 8)
        return std::nullopt;
    const std::uint64_t size = reader.u32();
    Box box{reader.u32(), {}};
    std::uint64_t payload = 0;
    if (size == 0) {
        payload = reader.remaining();
    } else if (size == 1) {
        const std::uint64_t large = reader.u64();
        if (reader.failed() || large < 16)
            return std::nullopt;
        payload = large - 16;
    } else {
        if (size < 8)
            return std::nullopt;
        payload = size - 8;
    }
    if (cutShortIsFine)
        payload = std::min<std::uint64_t>(payload, reader.remaining());
    box.payload = reader.bytes(payload);
    if (reader.failed())
        return std::nullopt;
    return box;
}

} // namespace

std::vector<Box> HeifBoxes::boxesIn(Bytes bytes) {
    std::vector<Box> boxes;
    ByteReader reader(bytes);
    while (boxes.size() < mostBoxes) {
        std::optional<Box> box = nextBox(reader);
        if (!box)
            break;
        boxes.push_back(*box);
    }
    return boxes;
}

HeifBoxes::FullBox HeifBoxes::readFullBox(ByteReader& reader) {
    const std::uint32_t word = reader.u32();
    return {static_cast<std::uint8_t>(word >> 24), word & 0xffffff};
}

std::optional<HeifMeta> HeifMeta::read(Bytes file) {
    ByteReader reader(file);
    for (std::size_t i = 0; i < mostBoxes; ++i) {
        const std::optional<Box> box = nextBox(reader, true);
        if (!box)
            return std::nullopt;
        if (box->type != fourCC("meta"))
            continue;
        HeifMeta meta(file);
        if (!meta.readBoxes(box->payload))
            return std::nullopt;
        return meta;
    }
    return std::nullopt;
}

bool HeifMeta::readBoxes(Bytes payload) {
    ByteReader header(payload);
    readFullBox(header);
    const std::vector<Box> boxes = boxesIn(header.rest());
    for (const Box& box : boxes) {
        if (box.type == fourCC("idat"))
            m_itemData = box.payload;
    }
    // Items first: the other boxes speak of them.
    for (const Box& box : boxes) {
        if (box.type == fourCC("iinf"))
            readItemInfos(box.payload);
        else if (box.type == fourCC("pitm"))
            readPrimary(box.payload);
    }
    for (const Box& box : boxes) {
        if (box.type == fourCC("iloc"))
            readLocations(box.payload);
        else if (box.type == fourCC("iprp"))
            readProperties(box.payload);
        else if (box.type == fourCC("iref"))
            readReferences(box.payload);
    }
    return m_items.contains(m_primary);
}

void HeifMeta::readPrimary(Bytes payload) {
    ByteReader reader(payload);
    const FullBox box = readFullBox(reader);
    m_primary = box.version == 0 ? reader.u16() : reader.u32();
}

void HeifMeta::readItemInfos(Bytes payload) {
    ByteReader reader(payload);
    const FullBox box = readFullBox(reader);
    reader.number(box.version == 0 ? 2 : 4); // the count, which the boxes themselves tell better
    for (const Box& entry : boxesIn(reader.rest())) {
        if (entry.type != fourCC("infe") || m_items.size() >= mostItems)
            continue;
        ByteReader info(entry.payload);
        const FullBox infe = readFullBox(info);
        if (infe.version < 2)
            continue;
        const HeifItemId id = infe.version == 2 ? info.u16() : info.u32();
        info.u16(); // protection
        const std::uint32_t type = info.u32();
        if (!info.failed())
            m_items[id].type = type;
    }
}

void HeifMeta::readLocations(Bytes payload) {
    ByteReader reader(payload);
    const FullBox box = readFullBox(reader);
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
        const std::uint16_t reference = reader.u16();
        const std::uint64_t base = reader.number(baseSize);
        const std::uint16_t extents = reader.u16();
        const auto found = m_items.find(id);
        // Only this file (0) and its own data box (1); data in other files or in other items is not
        // followed.
        const bool isHere = reference == 0 && method <= 1;
        const Bytes source = method == 0 ? m_file : m_itemData;
        for (std::uint16_t extent = 0; extent < extents && !reader.failed(); ++extent) {
            reader.number(indexSize);
            const std::uint64_t offset = reader.number(offsetSize);
            const std::uint64_t length = reader.number(lengthSize);
            if (++seen > mostExtents)
                return;
            if (reader.failed() || found == m_items.end() || !isHere ||
                found->second.data.size() >= mostExtentsOfAnItem)
                continue;
            const std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
            if (offset > most - base || base + offset > source.size())
                continue;
            const std::uint64_t start = base + offset;
            const std::uint64_t available = source.size() - start;
            // A length of 0 means all the rest. Data that is cut short is handed on as far as it goes.
            const std::uint64_t taken = length == 0 ? available : std::min(length, available);
            found->second.data.push_back(
                source.subspan(static_cast<std::size_t>(start), static_cast<std::size_t>(taken)));
        }
    }
}

void HeifMeta::readProperties(Bytes payload) {
    for (const Box& box : boxesIn(payload)) {
        if (box.type == fourCC("ipco"))
            m_properties = boxesIn(box.payload);
        else if (box.type == fourCC("ipma"))
            readAssociations(box.payload);
    }
}

void HeifMeta::readAssociations(Bytes payload) {
    ByteReader reader(payload);
    const FullBox box = readFullBox(reader);
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
    const FullBox box = readFullBox(reader);
    const std::size_t idSize = box.version == 0 ? 2 : 4;
    for (const Box& reference : boxesIn(reader.rest())) {
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
