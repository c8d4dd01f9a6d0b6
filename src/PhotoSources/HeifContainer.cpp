#include <PhotoSources/ByteReader.h>
#include <PhotoSources/HeifContainer.h>

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace PhotoSources::HeifContainer {

namespace {

using Bytes = std::span<const std::uint8_t>;
using ItemId = std::uint32_t;

/// No picture needs more; what counts itself larger is an attack on the reader's time and memory.
constexpr std::size_t mostItems = 20'000;
constexpr std::size_t mostBoxes = 100'000;
constexpr std::size_t mostTiles = 16'384;
constexpr std::size_t mostTransforms = 16;
constexpr std::size_t mostExtents = 100'000;
constexpr std::size_t mostExtentsOfAnItem = 256;
constexpr std::size_t mostPropertiesOfAnItem = 256;
constexpr int mostDerivations = 4;
constexpr int largestSide = 65'535;

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

std::vector<Box> boxesIn(Bytes bytes) {
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

struct FullBox {
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
};

FullBox readFullBox(ByteReader& reader) {
    const std::uint32_t word = reader.u32();
    return {static_cast<std::uint8_t>(word >> 24), word & 0xffffff};
}

struct Item {
    std::uint32_t type = 0;
    std::vector<Bytes> data;
    /// Indices into the file's properties, in the order of association.
    std::vector<std::size_t> properties;
    /// Items this one is derived from.
    std::vector<ItemId> derivedFrom;
    /// Auxiliary pictures (transparency, depth, gain map) that go with this item.
    std::vector<ItemId> auxiliaries;
};

/// The items and properties of the file's meta box.
class Meta {
public:
    [[nodiscard]] static std::optional<Meta> read(Bytes file) {
        ByteReader reader(file);
        for (std::size_t i = 0; i < mostBoxes; ++i) {
            const std::optional<Box> box = nextBox(reader, true);
            if (!box)
                return std::nullopt;
            if (box->type != fourCC("meta"))
                continue;
            Meta meta(file);
            if (!meta.readBoxes(box->payload))
                return std::nullopt;
            return meta;
        }
        return std::nullopt;
    }

    [[nodiscard]] ItemId primary() const { return m_primary; }

    [[nodiscard]] const Item* item(ItemId id) const {
        const auto found = m_items.find(id);
        return found == m_items.end() ? nullptr : &found->second;
    }

    [[nodiscard]] const Box& property(std::size_t index) const { return m_properties[index]; }
    [[nodiscard]] std::size_t propertyCount() const { return m_properties.size(); }

private:
    explicit Meta(Bytes file)
        : m_file(file) {}

    bool readBoxes(Bytes payload) {
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

    void readPrimary(Bytes payload) {
        ByteReader reader(payload);
        const FullBox box = readFullBox(reader);
        m_primary = box.version == 0 ? reader.u16() : reader.u32();
    }

    void readItemInfos(Bytes payload) {
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
            const ItemId id = infe.version == 2 ? info.u16() : info.u32();
            info.u16(); // protection
            const std::uint32_t type = info.u32();
            if (!info.failed())
                m_items[id].type = type;
        }
    }

    void readLocations(Bytes payload) {
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
            const ItemId id = box.version < 2 ? reader.u16() : reader.u32();
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

    void readProperties(Bytes payload) {
        for (const Box& box : boxesIn(payload)) {
            if (box.type == fourCC("ipco"))
                m_properties = boxesIn(box.payload);
            else if (box.type == fourCC("ipma"))
                readAssociations(box.payload);
        }
    }

    void readAssociations(Bytes payload) {
        ByteReader reader(payload);
        const FullBox box = readFullBox(reader);
        const std::uint32_t count = reader.u32();
        for (std::uint32_t i = 0; i < count && !reader.failed(); ++i) {
            const ItemId id = box.version < 1 ? reader.u16() : reader.u32();
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

    void readReferences(Bytes payload) {
        ByteReader reader(payload);
        const FullBox box = readFullBox(reader);
        const std::size_t idSize = box.version == 0 ? 2 : 4;
        for (const Box& reference : boxesIn(reader.rest())) {
            if (reference.type != fourCC("dimg") && reference.type != fourCC("auxl"))
                continue;
            ByteReader ids(reference.payload);
            const auto from = static_cast<ItemId>(ids.number(idSize));
            const std::uint16_t count = ids.u16();
            const auto found = m_items.find(from);
            for (std::uint16_t i = 0; i < count && !ids.failed() && found != m_items.end(); ++i) {
                const auto id = static_cast<ItemId>(ids.number(idSize));
                if (ids.failed())
                    break;
                if (reference.type == fourCC("dimg"))
                    found->second.derivedFrom.push_back(id);
                else if (const auto owner = m_items.find(id); owner != m_items.end())
                    owner->second.auxiliaries.push_back(from);
            }
        }
    }

    Bytes m_file;
    Bytes m_itemData;
    ItemId m_primary = 0;
    std::map<ItemId, Item> m_items;
    std::vector<Box> m_properties;
};

std::vector<std::uint8_t> joined(const std::vector<Bytes>& pieces, std::size_t most) {
    std::vector<std::uint8_t> result;
    for (const Bytes piece : pieces) {
        const Bytes part = piece.first(std::min(piece.size(), most - result.size()));
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

std::optional<HevcParameters> readHevcParameters(Bytes payload) {
    ByteReader reader(payload);
    const std::uint8_t version = reader.u8();
    reader.bytes(20);
    HevcParameters parameters;
    parameters.lengthSize = (reader.u8() & 3) + 1;
    const std::uint8_t arrays = reader.u8();
    if (reader.failed() || version != 1)
        return std::nullopt;
    for (std::uint8_t i = 0; i < arrays; ++i) {
        reader.u8(); // completeness and type, which each unit repeats
        const std::uint16_t count = reader.u16();
        for (std::uint16_t k = 0; k < count && !reader.failed(); ++k) {
            const Bytes unit = reader.bytes(reader.u16());
            if (!reader.failed() && unit.size() > 2)
                parameters.units.push_back(unit);
        }
    }
    if (parameters.units.empty())
        return std::nullopt;
    return parameters;
}

std::optional<HeifCrop> readCrop(Bytes payload) {
    ByteReader reader(payload);
    const auto ratio = [&reader](bool isSigned) -> std::optional<double> {
        const std::uint32_t numerator = reader.u32();
        const std::uint32_t denominator = reader.u32();
        if (denominator == 0)
            return std::nullopt;
        const double value = isSigned ? static_cast<std::int32_t>(numerator) : static_cast<double>(numerator);
        return value / denominator;
    };
    const auto width = ratio(false), height = ratio(false), x = ratio(true), y = ratio(true);
    if (reader.failed() || !width || !height || !x || !y)
        return std::nullopt;
    return HeifCrop{*width, *height, *x, *y};
}

/// What the properties of one item say.
struct Properties {
    int width = 0;
    int height = 0;
    std::shared_ptr<const HevcParameters> parameters;
    std::vector<HeifTransform> transforms;
    std::optional<ColourCoding> coding;
    Bytes iccProfile;
};

/// Reads properties, the parameter sets of tiles that share them only once.
class PropertyReader {
public:
    explicit PropertyReader(const Meta& meta)
        : m_meta(meta) {}

    Properties read(const Item& item) {
        Properties result;
        for (const std::size_t index : item.properties) {
            if (index >= m_meta.propertyCount())
                continue;
            const Box& box = m_meta.property(index);
            ByteReader reader(box.payload);
            switch (box.type) {
            case fourCC("ispe"): {
                readFullBox(reader);
                const std::uint32_t width = reader.u32(), height = reader.u32();
                if (!reader.failed() && width <= largestSide && height <= largestSide) {
                    result.width = static_cast<int>(width);
                    result.height = static_cast<int>(height);
                }
                break;
            }
            case fourCC("hvcC"):
                result.parameters = parametersAt(index);
                break;
            case fourCC("colr"):
                readColour(reader, result);
                break;
            case fourCC("irot"): {
                // Quarter turns anticlockwise.
                static constexpr int exif[] = {1, 8, 3, 6};
                addTransform(result, Orientation::fromExif(exif[reader.u8() & 3]));
                break;
            }
            case fourCC("imir"):
                // 0 exchanges top and bottom, 1 left and right.
                addTransform(result, Orientation::fromExif(reader.u8() & 1 ? 2 : 4));
                break;
            case fourCC("clap"):
                if (const std::optional<HeifCrop> crop = readCrop(box.payload))
                    addTransform(result, *crop);
                break;
            default:
                break;
            }
        }
        return result;
    }

private:
    static void addTransform(Properties& properties, const HeifTransform& transform) {
        if (properties.transforms.size() < mostTransforms)
            properties.transforms.push_back(transform);
    }

    static void readColour(ByteReader& reader, Properties& result) {
        switch (reader.u32()) {
        case fourCC("nclx"): {
            ColourCoding coding;
            coding.primaries = reader.u16();
            coding.transfer = reader.u16();
            coding.matrix = reader.u16();
            coding.fullRange = (reader.u8() & 0x80) != 0;
            if (!reader.failed())
                result.coding = coding;
            break;
        }
        case fourCC("prof"):
        case fourCC("rICC"):
            result.iccProfile = reader.rest();
            break;
        default:
            break;
        }
    }

    std::shared_ptr<const HevcParameters> parametersAt(std::size_t index) {
        const auto [entry, isNew] = m_parameters.try_emplace(index);
        if (isNew) {
            if (std::optional<HevcParameters> read = readHevcParameters(m_meta.property(index).payload))
                entry->second = std::make_shared<const HevcParameters>(std::move(*read));
        }
        return entry->second;
    }

    const Meta& m_meta;
    std::map<std::size_t, std::shared_ptr<const HevcParameters>> m_parameters;
};

/// Whether one of the item's auxiliary pictures is its transparency.
bool hasAlpha(const Meta& meta, const Item& item) {
    static constexpr std::string_view kinds[] = {"urn:mpeg:hevc:2015:auxid:1",
                                                 "urn:mpeg:mpegB:cicp:systems:auxiliary:alpha"};
    for (const ItemId id : item.auxiliaries) {
        const Item* auxiliary = meta.item(id);
        for (const std::size_t index : auxiliary->properties) {
            if (index >= meta.propertyCount() || meta.property(index).type != fourCC("auxC"))
                continue;
            ByteReader reader(meta.property(index).payload);
            readFullBox(reader);
            const Bytes text = reader.rest();
            if (std::ranges::any_of(kinds, [text](std::string_view kind) {
                    return text.size() >= kind.size() && std::equal(kind.begin(), kind.end(), text.begin());
                }))
                return true;
        }
    }
    return false;
}

bool isHevc(const Item& item) {
    return item.type == fourCC("hvc1") || item.type == fourCC("hev1");
}

std::optional<HeifTile> tileOf(const Item* item, PropertyReader& reader) {
    if (!item || !isHevc(*item) || item->data.empty())
        return std::nullopt;
    Properties properties = reader.read(*item);
    if (!properties.parameters)
        return std::nullopt;
    return HeifTile{item->data, std::move(properties.parameters), properties.width, properties.height};
}

std::optional<HeifPicture> gridOf(const Meta& meta, const Item& item, PropertyReader& reader) {
    const std::vector<std::uint8_t> description = joined(item.data, 12);
    ByteReader grid(description);
    grid.u8(); // version
    const bool wide = (grid.u8() & 1) != 0;
    HeifPicture picture;
    picture.rows = grid.u8() + 1;
    picture.columns = grid.u8() + 1;
    const std::uint64_t width = grid.number(wide ? 4 : 2), height = grid.number(wide ? 4 : 2);
    const std::size_t count =
        static_cast<std::size_t>(picture.rows) * static_cast<std::size_t>(picture.columns);
    if (grid.failed() || width == 0 || height == 0 || width > largestSide || height > largestSide ||
        count > mostTiles || item.derivedFrom.size() < count)
        return std::nullopt;
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    for (std::size_t i = 0; i < count; ++i) {
        std::optional<HeifTile> tile = tileOf(meta.item(item.derivedFrom[i]), reader);
        if (!tile)
            return std::nullopt;
        picture.tiles.push_back(std::move(*tile));
    }
    // Tiles are cut from one raster: all have the first one's size, and together they cover the picture, none
    // lying outside (which would be work for nothing).
    const HeifTile& first = picture.tiles.front();
    const auto covers = [](std::int64_t tile, std::int64_t count, std::int64_t whole) {
        return tile * count >= whole && tile * (count - 1) < whole;
    };
    if (!covers(first.width, picture.columns, picture.width) ||
        !covers(first.height, picture.rows, picture.height))
        return std::nullopt;
    for (const HeifTile& tile : picture.tiles) {
        if (tile.width != first.width || tile.height != first.height)
            return std::nullopt;
    }
    // What the grid does not say of its colours, its tiles may.
    Properties tileProperties = reader.read(*meta.item(item.derivedFrom.front()));
    picture.coding = tileProperties.coding;
    picture.iccProfile = tileProperties.iccProfile;
    return picture;
}

std::optional<HeifPicture> pictureOf(const Meta& meta, ItemId id, PropertyReader& reader, int depth) {
    const Item* item = meta.item(id);
    if (!item || depth > mostDerivations)
        return std::nullopt;
    std::optional<HeifPicture> picture;
    if (isHevc(*item)) {
        std::optional<HeifTile> tile = tileOf(item, reader);
        if (!tile || tile->width < 1 || tile->height < 1)
            return std::nullopt;
        picture.emplace();
        picture->width = tile->width;
        picture->height = tile->height;
        picture->tiles.push_back(std::move(*tile));
    } else if (item->type == fourCC("grid")) {
        picture = gridOf(meta, *item, reader);
    } else if (item->type == fourCC("iden") && item->derivedFrom.size() == 1) {
        picture = pictureOf(meta, item->derivedFrom.front(), reader, depth + 1);
    }
    if (!picture)
        return std::nullopt;
    Properties properties = reader.read(*item);
    if (properties.coding)
        picture->coding = properties.coding;
    if (!properties.iccProfile.empty())
        picture->iccProfile = properties.iccProfile;
    picture->transforms.insert(picture->transforms.end(), properties.transforms.begin(),
                               properties.transforms.end());
    return picture;
}

} // namespace

std::optional<HeifPicture> readHevcPicture(Bytes file) {
    const std::optional<Meta> meta = Meta::read(file);
    if (!meta)
        return std::nullopt;
    PropertyReader reader(*meta);
    std::optional<HeifPicture> picture = pictureOf(*meta, meta->primary(), reader, 0);
    if (picture)
        picture->hasAlpha = hasAlpha(*meta, *meta->item(meta->primary()));
    return picture;
}

std::optional<ColourCoding> readUntaggedCoding(Bytes file) {
    const std::optional<Meta> meta = Meta::read(file);
    const Item* item = meta ? meta->item(meta->primary()) : nullptr;
    if (!item)
        return std::nullopt;
    PropertyReader reader(*meta);
    Properties properties = reader.read(*item);
    if (!properties.coding && properties.iccProfile.empty() && !item->derivedFrom.empty()) {
        if (const Item* first = meta->item(item->derivedFrom.front()))
            properties = reader.read(*first);
    }
    return properties.iccProfile.empty() ? properties.coding : std::nullopt;
}

} // namespace PhotoSources::HeifContainer
