// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ByteReader.h>
#include <PhotoSources/IsoBoxes.h>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace PhotoSources {

using HeifItemId = std::uint32_t;

/// A run of bytes of the file, inside of it.
struct HeifExtent {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

struct HeifItem {
    std::uint32_t type = 0;
    /// What makes up the item's data, in order.
    std::vector<HeifExtent> data;
    /// Indices into the file's properties, in the order of association.
    std::vector<std::size_t> properties;
    /// Items this one is derived from.
    std::vector<HeifItemId> derivedFrom;
    /// Auxiliary pictures (transparency, depth, gain map) that go with this item.
    std::vector<HeifItemId> auxiliaries;
};

struct HeifFullBox {
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
};

HeifFullBox readFullBox(ByteReader& reader);

/// The items and properties that a HEIF file's meta box (ISO/IEC 23008-12) lists, as far as pictures and
/// their metadata need them. Counts that neither needs are cut off: they would be an attack on the reader's
/// time and memory.
class HeifMeta {
public:
    /// `payload`: the contents of the meta box, which lie at `offset` in a file of `fileSize` bytes. Points
    /// into them.
    HeifMeta(IsoBoxes::Bytes payload, std::uint64_t offset, std::uint64_t fileSize);

    /// Null where the file lists no such item.
    [[nodiscard]] const HeifItem* primary() const { return item(m_primary); }
    [[nodiscard]] const HeifItem* item(HeifItemId id) const;
    /// The first that holds EXIF data; null where there is none.
    [[nodiscard]] const HeifItem* exif() const { return m_exif ? item(*m_exif) : nullptr; }
    [[nodiscard]] const IsoBoxes::LoadedBox& property(std::size_t index) const { return m_properties[index]; }
    [[nodiscard]] std::size_t propertyCount() const { return m_properties.size(); }

private:
    void readPrimary(IsoBoxes::Bytes payload);
    void readItemInfos(IsoBoxes::Bytes payload);
    void readLocations(IsoBoxes::Bytes payload);
    void readProperties(IsoBoxes::Bytes payload);
    void readAssociations(IsoBoxes::Bytes payload);
    void readReferences(IsoBoxes::Bytes payload);

    /// Where items' data may lie: in the file, or in the meta box's own data box.
    HeifExtent m_file;
    HeifExtent m_itemData;
    HeifItemId m_primary = 0;
    std::optional<HeifItemId> m_exif;
    std::map<HeifItemId, HeifItem> m_items;
    std::vector<IsoBoxes::LoadedBox> m_properties;
};

} // namespace PhotoSources
