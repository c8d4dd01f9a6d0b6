#pragma once

#include <PhotoSources/ByteReader.h>

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace PhotoSources {

/// The boxes of an ISO base media file (ISO/IEC 14496-12).
namespace HeifBoxes {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint32_t fourCC(const char (&text)[5]) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(text[0])) << 24 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[1])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[2])) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[3]));
}

struct Box {
    std::uint32_t type = 0;
    Bytes payload;
};

/// Up to the first whose size does not fit.
[[nodiscard]] std::vector<Box> boxesIn(Bytes bytes);

struct FullBox {
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
};

FullBox readFullBox(ByteReader& reader);

} // namespace HeifBoxes

using HeifItemId = std::uint32_t;

struct HeifItem {
    std::uint32_t type = 0;
    std::vector<std::span<const std::uint8_t>> data;
    /// Indices into the file's properties, in the order of association.
    std::vector<std::size_t> properties;
    /// Items this one is derived from.
    std::vector<HeifItemId> derivedFrom;
    /// Auxiliary pictures (transparency, depth, gain map) that go with this item.
    std::vector<HeifItemId> auxiliaries;
};

/// The items and properties that a HEIF file's meta box lists, as far as a picture needs them. Points into
/// the bytes given. Counts that no picture needs are cut off: they would be an attack on the reader's time
/// and memory.
class HeifMeta {
public:
    /// Nothing where there is no meta box, or it does not list its primary item.
    [[nodiscard]] static std::optional<HeifMeta> read(HeifBoxes::Bytes file);

    [[nodiscard]] HeifItemId primary() const { return m_primary; }
    /// Null where there is none.
    [[nodiscard]] const HeifItem* item(HeifItemId id) const;
    [[nodiscard]] const HeifBoxes::Box& property(std::size_t index) const { return m_properties[index]; }
    [[nodiscard]] std::size_t propertyCount() const { return m_properties.size(); }

private:
    explicit HeifMeta(HeifBoxes::Bytes file)
        : m_file(file) {}

    bool readBoxes(HeifBoxes::Bytes payload);
    void readPrimary(HeifBoxes::Bytes payload);
    void readItemInfos(HeifBoxes::Bytes payload);
    void readLocations(HeifBoxes::Bytes payload);
    void readProperties(HeifBoxes::Bytes payload);
    void readAssociations(HeifBoxes::Bytes payload);
    void readReferences(HeifBoxes::Bytes payload);

    HeifBoxes::Bytes m_file;
    HeifBoxes::Bytes m_itemData;
    HeifItemId m_primary = 0;
    std::map<HeifItemId, HeifItem> m_items;
    std::vector<HeifBoxes::Box> m_properties;
};

} // namespace PhotoSources
