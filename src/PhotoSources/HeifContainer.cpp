// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifContainer.h>
#include <PhotoSources/HeifMeta.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace PhotoSources::HeifContainer {

namespace {

using namespace IsoBoxes;

constexpr std::size_t mostTiles = 16'384;
constexpr std::size_t mostTransforms = 16;
constexpr int mostDerivations = 4;
constexpr int largestSide = 65'535;

/// The file's meta box; points into the file.
std::optional<HeifMeta> metaOf(Bytes file) {
    const std::optional<Box> box = findBox(BorrowedMemory{file}, 0, fourCC("meta"));
    if (!box)
        return std::nullopt;
    const Bytes rest = file.subspan(static_cast<std::size_t>(box->offset));
    const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(box->length, rest.size()));
    return HeifMeta{rest.first(length), box->offset, file.size()};
}

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

/// Reads what belongs to items, the parameter sets of tiles that share them only once.
class ItemReader {
public:
    ItemReader(Bytes file, const HeifMeta& meta)
        : m_file(file)
        , m_meta(meta) {}

    [[nodiscard]] std::vector<Bytes> data(const HeifItem& item) const {
        std::vector<Bytes> pieces;
        pieces.reserve(item.data.size());
        for (const HeifExtent& extent : item.data)
            pieces.push_back(m_file.subspan(static_cast<std::size_t>(extent.offset),
                                            static_cast<std::size_t>(extent.length)));
        return pieces;
    }

    Properties properties(const HeifItem& item) {
        Properties result;
        for (const std::size_t index : item.properties) {
            if (index >= m_meta.propertyCount())
                continue;
            const LoadedBox& box = m_meta.property(index);
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

    Bytes m_file;
    const HeifMeta& m_meta;
    std::map<std::size_t, std::shared_ptr<const HevcParameters>> m_parameters;
};

/// Whether one of the item's auxiliary pictures is its transparency.
bool hasAlpha(const HeifMeta& meta, const HeifItem& item) {
    static constexpr std::string_view kinds[] = {"urn:mpeg:hevc:2015:auxid:1",
                                                 "urn:mpeg:mpegB:cicp:systems:auxiliary:alpha"};
    for (const HeifItemId id : item.auxiliaries) {
        const HeifItem* auxiliary = meta.item(id);
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

bool isHevc(const HeifItem& item) {
    return item.type == fourCC("hvc1") || item.type == fourCC("hev1");
}

std::optional<HeifTile> tileOf(const HeifItem* item, ItemReader& reader) {
    if (!item || !isHevc(*item) || item->data.empty())
        return std::nullopt;
    Properties properties = reader.properties(*item);
    if (!properties.parameters)
        return std::nullopt;
    return HeifTile{reader.data(*item), std::move(properties.parameters), properties.width,
                    properties.height};
}

std::optional<HeifPicture> gridOf(const HeifMeta& meta, const HeifItem& item, ItemReader& reader) {
    const std::vector<std::uint8_t> description = joined(reader.data(item), 12);
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
    Properties tileProperties = reader.properties(*meta.item(item.derivedFrom.front()));
    picture.coding = tileProperties.coding;
    picture.iccProfile = tileProperties.iccProfile;
    return picture;
}

std::optional<HeifPicture> pictureOf(const HeifMeta& meta, const HeifItem* item, ItemReader& reader,
                                     int depth) {
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
        picture = pictureOf(meta, meta.item(item->derivedFrom.front()), reader, depth + 1);
    }
    if (!picture)
        return std::nullopt;
    Properties properties = reader.properties(*item);
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
    const std::optional<HeifMeta> meta = metaOf(file);
    if (!meta)
        return std::nullopt;
    ItemReader reader(file, *meta);
    std::optional<HeifPicture> picture = pictureOf(*meta, meta->primary(), reader, 0);
    if (picture)
        picture->hasAlpha = hasAlpha(*meta, *meta->primary());
    return picture;
}

std::optional<ColourCoding> readUntaggedCoding(Bytes file) {
    const std::optional<HeifMeta> meta = metaOf(file);
    const HeifItem* item = meta ? meta->primary() : nullptr;
    if (!item)
        return std::nullopt;
    ItemReader reader(file, *meta);
    Properties properties = reader.properties(*item);
    if (!properties.coding && properties.iccProfile.empty() && !item->derivedFrom.empty()) {
        if (const HeifItem* first = meta->item(item->derivedFrom.front()))
            properties = reader.properties(*first);
    }
    return properties.iccProfile.empty() ? properties.coding : std::nullopt;
}

} // namespace PhotoSources::HeifContainer
