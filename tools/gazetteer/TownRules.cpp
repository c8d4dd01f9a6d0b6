// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TownRules.h"

#include "NameRules.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace GazetteerBuilder {

namespace {

/// A town swallows what lies within this part of its radius and belongs to its unit; all of the radius where
/// the unit is its own municipality.
constexpr double coreShare = 0.5;
constexpr std::size_t municipalityLevel = 2;
/// But nothing that is itself a fair part of it.
constexpr double sectionShare = 0.4;
/// Where the unit is a whole state, cities of this size farther out than this part of the core are
/// neighbours.
constexpr std::uint32_t neighbourPopulation = 300'000;
constexpr double neighbourShare = 0.6;
/// Smaller towns are left alone: what lies beside them are villages, not districts. Where the unit is the
/// town's own municipality, districts are found beside small towns too.
constexpr std::uint32_t smallestMetropolis = 100'000;
constexpr std::uint32_t smallestMunicipality = 1000;
/// The densely built core, for which `coreShare` is measured.
constexpr double coreDensityPerKm2 = 4000;
constexpr double townDensityPerKm2 = 3000;
constexpr double smallestRadiusKm = 0.5;
constexpr double largestRadiusKm = 25;

/// A seat of government is known beyond its size, a small one more so: as a town of more people, by a share
/// of its own and by so many at most.
constexpr std::uint32_t capitalBonus = 500'000;
constexpr std::uint32_t seatBonus = 20'000;
/// A town has this many times the people of a section of it.
constexpr std::uint32_t smallestTownForItsSection = 2;
/// How far outside of the town a quarter of the same administrative unit may lie.
constexpr double farthestQuarterKm = 5;
/// A section that belongs to no town is one itself when it has so many people, and nothing near the edge of
/// which it lies has as many as this part of them.
constexpr std::uint32_t smallestSuburb = 1000;
constexpr double suburbSeparationKm = 10;
constexpr double largestNeighbour = 0.5;

/// How many people a postal code outside of its town stands for.
constexpr std::uint32_t postalQuarterPopulation = 5000;
/// Where post offices name villages: so far from the edge of a town they are none of its parts, and so far
/// away another of the same name is another place.
constexpr double villageSeparationKm = 6;
constexpr double samePlaceKm = 30;

/// No rule below looks farther than this.
constexpr double farthestNeighbourKm = largestRadiusKm + 15;

constexpr double kmPerDegree = 111.195;

double distanceKm(const Place& a, const Place& b) {
    const double latitude = (a.latitude + b.latitude) / 2 * std::numbers::pi / 180;
    const double dx = std::remainder(a.longitude - b.longitude, 360.0) * std::cos(latitude);
    return std::hypot(dx, a.latitude - b.latitude) * kmPerDegree;
}

/// Most pairs need no more than this.
bool isFarNorthOrSouth(const Place& a, const Place& b, double km) {
    return std::abs(a.latitude - b.latitude) * kmPerDegree > km;
}

double discRadius(std::uint32_t population, double density) {
    return std::sqrt(population / (std::numbers::pi * density));
}

/// Territories that are one town, whatever their districts are.
bool isCityState(std::string_view country) {
    static const std::set<std::string_view> codes{"GI", "HK", "MC", "MO", "SG", "VA"};
    return codes.contains(country);
}

/// Whether the inner place belongs to the smallest administrative unit that the outer one names.
bool isInUnitOf(const Place& inner, const Place& outer) {
    if (inner.country != outer.country)
        return false;
    if (isCityState(outer.country))
        return true;
    for (std::size_t level = 0; level < outer.areas.size(); ++level) {
        if (outer.areas[level].empty())
            return level > 0;
        if (inner.areas[level] != outer.areas[level])
            return false;
    }
    return true;
}

/// Places by whole degrees, to look only at those nearby.
using Grid = std::map<std::pair<int, int>, std::vector<std::size_t>>;

std::pair<int, int> gridCell(const Place& place) {
    return {static_cast<int>(std::floor(place.latitude)), static_cast<int>(std::floor(place.longitude))};
}

Grid gridOf(const std::vector<Place>& places) {
    Grid grid;
    for (std::size_t i = 0; i < places.size(); ++i)
        grid[gridCell(places[i])].push_back(i);
    return grid;
}

/// Calls `action` with the number of each place in the grid's cells around the place.
template <typename Action>
void forEachAround(const Grid& grid, const Place& place, const Action& action) {
    const auto [row, column] = gridCell(place);
    for (int y = row - 1; y <= row + 1; ++y) {
        for (int x = column - 1; x <= column + 1; ++x) {
            if (const auto cell = grid.find({y, x}); cell != grid.end())
                std::for_each(cell->second.begin(), cell->second.end(), action);
        }
    }
}

bool mayBePartOf(const Place& section, const Place& town, double km) {
    if (section.country != town.country || section.areas[0] != town.areas[0] ||
        town.population < section.population * smallestTownForItsSection)
        return false;
    const std::string& own = section.areas[municipalityLevel];
    const std::string& other = town.areas[municipalityLevel];
    if (!own.empty() && !other.empty() && own != other)
        return false;
    const double radius = radiusKm(town.population);
    return km < radius || (section.areas[1] == town.areas[1] && km < radius + farthestQuarterKm);
}

} // namespace

bool isTown(const Place& place) {
    // Sections of towns; historical, destroyed and abandoned places.
    static const std::set<std::string_view> others{"PPLX", "PPLA5", "PPLH", "PPLCH", "PPLQ", "PPLW"};
    if (others.contains(place.kind) || place.name.find("(Kreis ") != std::string::npos ||
        place.name.ends_with("(historical)"))
        return false;
    // A seat of government where nobody lives is a building.
    return place.kind != "PPLG" || place.population > 0;
}

bool isSection(const Place& place) {
    return place.kind == "PPLX";
}

std::uint32_t assumedPopulation(const Place& place) {
    // A seat of government is known beyond its size; a place that nobody counted is small.
    std::uint32_t least = 100;
    if (place.kind == "PPLC")
        least = 10'000;
    else if (place.kind == "PPLA")
        least = 5000;
    else if (place.kind == "PPLA2")
        least = 2000;
    else if (place.kind == "PPLA3")
        least = 500;
    std::uint32_t bonus = 0;
    if (place.kind == "PPLC")
        bonus = std::min(place.population, capitalBonus);
    else if (place.kind == "PPLA")
        bonus = std::min(place.population / 2, seatBonus);
    return std::max(place.population + bonus, least);
}

double radiusKm(std::uint32_t population) {
    return std::clamp(discRadius(population, townDensityPerKm2), smallestRadiusKm, largestRadiusKm);
}

double fadeKm(std::uint32_t population) {
    return 2 + std::log10(population / 500.0);
}

std::vector<Place> withoutSections(std::vector<Place> places, const std::filesystem::path& corrections) {
    std::map<std::vector<std::string>, std::string> listed;
    for (const auto& row : readTable(corrections, 4))
        listed[{row[0], row[1], row[2]}] = row[3];
    std::vector<std::size_t> largestFirst(places.size());
    for (std::size_t i = 0; i < places.size(); ++i)
        largestFirst[i] = i;
    std::stable_sort(largestFirst.begin(), largestFirst.end(), [&](std::size_t a, std::size_t b) {
        return places[a].population > places[b].population;
    });

    const Grid grid = gridOf(places);

    std::vector<bool> isSection(places.size(), false);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto parent = listed.find({places[i].country, places[i].areas[0], places[i].areas[1]});
        isSection[i] = parent != listed.end() && places[i].name != parent->second;
    }

    for (const std::size_t i : largestFirst) {
        const Place& town = places[i];
        const bool isMunicipality = !town.areas[municipalityLevel].empty();
        if (isSection[i] || town.population < (isMunicipality ? smallestMunicipality : smallestMetropolis))
            continue;
        const double core = discRadius(town.population, coreDensityPerKm2) * (isMunicipality ? 1 : coreShare);
        forEachAround(grid, town, [&](std::size_t j) {
            const Place& other = places[j];
            if (isFarNorthOrSouth(town, other, core))
                return;
            const double km = distanceKm(town, other);
            if (j != i && other.kind != "PPLC" && other.population < sectionShare * town.population &&
                km < core && isInUnitOf(other, town) &&
                !(other.population >= neighbourPopulation && km > core * neighbourShare))
                isSection[j] = true;
        });
    }

    std::vector<Place> towns;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (!isSection[i])
            towns.push_back(std::move(places[i]));
    }
    return towns;
}

std::vector<Place> moreTowns(const std::filesystem::path& table) {
    constexpr std::uint32_t villagePopulation = 1000;
    std::vector<Place> villages;
    for (const auto& fields : readTable(table, 4)) {
        Place& village = villages.emplace_back();
        village.country = fields[0];
        village.name = village.asciiName = fields[1];
        village.latitude = std::stod(fields[2]);
        village.longitude = std::stod(fields[3]);
        village.kind = "PPL";
        village.areas.resize(2);
        village.population = villagePopulation;
    }
    return villages;
}

std::vector<Place> postalPlaces(const std::vector<Place>& codes, const std::vector<Place>& towns) {
    const Grid grid = gridOf(towns);
    std::vector<Place> result;
    // The middle of a village's codes, and how many there are.
    std::map<std::vector<std::string>, std::pair<Place, int>> villages;
    for (const Place& code : codes) {
        const std::string name = englishName(code);
        bool isInGap = true;
        const Place* town = nullptr;
        double nearest = samePlaceKm;
        forEachAround(grid, code, [&](std::size_t i) {
            if (isFarNorthOrSouth(code, towns[i], farthestNeighbourKm))
                return;
            const double km = distanceKm(code, towns[i]);
            isInGap &= km > radiusKm(towns[i].population) + villageSeparationKm;
            if (km < nearest && code.areas[0] == towns[i].areas[0] && name == towns[i].name) {
                town = &towns[i];
                nearest = km;
            }
        });
        if (town && nearest > radiusKm(town->population)) {
            Place& quarter = result.emplace_back(code);
            quarter.name = town->name;
            quarter.population = std::min(postalQuarterPopulation, town->population / 2);
        } else if (!town && isInGap) {
            auto& [village, count] =
                villages.try_emplace({code.country, code.areas[0], code.areas[1], name}, code, 0)
                    .first->second;
            village.name = name;
            village.latitude += (code.latitude - village.latitude) / (count + 1);
            village.longitude += (code.longitude - village.longitude) / (count + 1);
            ++count;
        }
    }
    for (const auto& [key, entry] : villages)
        result.push_back(entry.first);
    return result;
}

std::vector<Place> quarters(const std::vector<Place>& sections, const std::vector<Place>& towns) {
    const Grid grid = gridOf(towns);
    std::vector<Place> result;
    for (const Place& section : sections) {
        const Place* parent = nullptr;
        double depth = 1;
        bool standsAlone = section.population >= smallestSuburb;
        forEachAround(grid, section, [&](std::size_t i) {
            const Place& town = towns[i];
            if (isFarNorthOrSouth(section, town, farthestNeighbourKm))
                return;
            const double km = distanceKm(section, town);
            standsAlone &= km > radiusKm(town.population) + suburbSeparationKm ||
                           town.population < section.population * largestNeighbour;
            if (!mayBePartOf(section, town, km))
                return;
            const double share = km / radiusKm(town.population);
            // Inside of several towns the nearest to its middle; outside of all the largest.
            if (share < depth || (depth >= 1 && (!parent || town.population > parent->population))) {
                parent = &town;
                depth = std::min(share, 1.0);
            }
        });
        if (parent) {
            Place& quarter = result.emplace_back(section);
            quarter.name = parent->name;
        } else if (standsAlone) {
            result.push_back(section);
            result.back().name = englishName(section);
        }
    }
    return result;
}

} // namespace GazetteerBuilder
