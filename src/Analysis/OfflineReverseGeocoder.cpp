// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/Gazetteer.h>
#include <Analysis/GeocodeCache.h>
#include <Analysis/OfflineReverseGeocoder.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

namespace Analysis {

namespace {

using GazetteerFormat::none;
using GazetteerFormat::Town;

/// How far from the shore a point still belongs to the land: a little more than territorial waters.
constexpr double coastalWatersKm = 25;
/// The coast is drawn no better than this: cliffs, piers and beaches are land.
constexpr double coastErrorKm = 2;
/// No town is named farther from its centre than this, however large.
constexpr double longestReachKm = 40;
/// The reach of the smallest hamlet; that of a town grows with it.
constexpr double shortestReachKm = 25;
/// A place that nobody counted is named no farther away.
constexpr double reachOfUncountedKm = 15;
/// On the water, or beyond it, how far from a town's edge one still names it.
constexpr double reachOverWaterKm = 15;
/// How close the nearest town has to be so that its second-level area is likely the point's own.
constexpr double secondLevelReachKm = 60;
/// And its first-level area.
constexpr double firstLevelReachKm = 160;
/// Where there is no border polygon at all, a town this close tells the country.
constexpr double countryByTownKm = 10;
/// A town in the polygon of another country claims its surroundings, as far as this from its edge.
constexpr double coarseBorderKm = 3;
/// What a first-level border between point and town weighs, and what water does.
constexpr double otherAreaPenalty = 2;
constexpr double otherIslandPenalty = 1.15;
/// Border polygons follow the ground where people live and run straight for long elsewhere: they may be wrong
/// by this, or by a part of the length of the nearest edge. Where the land borders disagree farther away,
/// they have taken a side in a dispute.
constexpr double borderErrorKm = 2;
constexpr double borderErrorByLength = 0.25;
constexpr double largestBorderErrorKm = 15;
/// The land borders themselves are as good as this.
constexpr double landBorderErrorKm = 0.15;
/// On a river between two countries, how far a bank tells the country.
constexpr double riverBankKm = 0.4;
/// The region layer is not true to less than this.
constexpr double regionPrecisionKm = 0.7;
/// Farther south all is land or shelf ice, which the coasts leave out.
constexpr double southernmostSea = -78.6;
/// Meridians meet in the poles themselves, where polygons that were drawn on a map end.
constexpr double northernmostLatitude = 89.9999;

/// Inside a town 0 at the centre to 1 at the edge; outside it grows, the more slowly the larger the town.
double remoteness(const Town& town, double km) {
    const double radius = double{town.radiusKm};
    return km <= radius ? km / radius : 1 + (km - radius) / double{town.fadeKm};
}

struct Position {
    /// Of the border polygon around the point.
    std::optional<std::uint16_t> country;
    /// The first-level piece of land it stands on, or whose coast is near.
    std::optional<std::uint16_t> region;
    bool isOnLand = false;
    /// On land, or so close that the coast may be drawn wrong.
    bool isAshore = false;
    bool isCoastal = false;
    /// Whether the region is beyond doubt.
    bool isRegionSure = false;
};

struct Found {
    const Town* town = nullptr;
    double distanceKm = std::numeric_limits<double>::infinity();
    double remoteness = std::numeric_limits<double>::infinity();
};

bool isBorderCoarse(const Gazetteer& gazetteer, double latitude, double longitude) {
    const auto border = gazetteer.borders().nearestEdge(latitude, longitude, largestBorderErrorKm);
    return border && border->distanceKm <= std::max(borderErrorKm, border->lengthKm * borderErrorByLength);
}

/// The country that the border polygons, which include waters, have around the point.
std::optional<std::uint16_t> countryByPolygon(const Gazetteer& gazetteer, double latitude, double longitude) {
    const auto shape = gazetteer.borders().shapeAt(latitude, longitude);
    if (!shape || gazetteer.borderShapes()[*shape] == none)
        return std::nullopt;
    return gazetteer.borderShapes()[*shape];
}

/// The country on whose land the point is, or on whose bank of a river, near land borders. Where several
/// claim it, the polygons decide.
std::optional<std::uint16_t> countryByLand(const Gazetteer& gazetteer, double latitude, double longitude,
                                           std::uint16_t byPolygon) {
    const PolygonLayer& layer = gazetteer.landBorders();
    std::optional<std::uint16_t> owner;
    for (auto shape = layer.shapeAt(latitude, longitude); shape;
         shape = layer.shapeAt(latitude, longitude, *shape + 1U)) {
        const std::uint16_t claimant = gazetteer.landBorderShapes()[*shape];
        if (claimant == byPolygon)
            return claimant;
        if (!owner)
            owner = claimant;
    }
    return owner;
}

/// The country whose land or waters the point lies in.
std::optional<std::uint16_t> countryAt(const Gazetteer& gazetteer, double latitude, double longitude) {
    const auto byPolygon = countryByPolygon(gazetteer, latitude, longitude);
    // The polygons hold all land but what is nobody's; without one, this is the open sea.
    if (!byPolygon || gazetteer.landBorders().isEmptyAround(latitude, longitude))
        return byPolygon;
    auto byLand = countryByLand(gazetteer, latitude, longitude, *byPolygon);
    if (!byLand) {
        if (const auto bank = gazetteer.landBorders().nearestEdge(latitude, longitude, riverBankKm))
            byLand = gazetteer.landBorderShapes()[bank->shape];
    }
    const bool isDoubtful = byLand && byLand != byPolygon && isBorderCoarse(gazetteer, latitude, longitude);
    return isDoubtful ? byLand : byPolygon;
}

/// The other country, for a point as good as on the border between two.
std::optional<std::uint16_t> countryBeyondTheLine(const Gazetteer& gazetteer, double latitude,
                                                  double longitude, std::optional<std::uint16_t> country) {
    const PolygonLayer& layer = gazetteer.landBorders();
    if (!country || layer.isEmptyAround(latitude, longitude))
        return std::nullopt;
    const auto line = layer.nearestEdge(latitude, longitude, landBorderErrorKm);
    if (!line)
        return std::nullopt;
    if (gazetteer.landBorderShapes()[line->shape] != country)
        return gazetteer.landBorderShapes()[line->shape];
    // Both countries have the same edge.
    const auto other = layer.nearestEdge(latitude, longitude, landBorderErrorKm, line->shape);
    return other ? std::optional(gazetteer.landBorderShapes()[other->shape]) : std::nullopt;
}

Position located(const Gazetteer& gazetteer, double latitude, double longitude) {
    Position position;
    position.country = countryAt(gazetteer, latitude, longitude);
    const PolygonLayer& regions = gazetteer.regionLayer();
    position.region = regions.shapeAt(latitude, longitude);
    position.isOnLand = position.region.has_value();
    double coastKm = 0;
    if (!position.isOnLand) {
        if (const auto coast = regions.nearestEdge(latitude, longitude, coastalWatersKm)) {
            position.isCoastal = true;
            position.region = coast->shape;
            coastKm = coast->distanceKm;
        }
    }
    position.isAshore = position.isOnLand || (position.isCoastal && coastKm <= coastErrorKm);
    const std::uint16_t regionCountry =
        position.region ? gazetteer.regions()[*position.region].country : none;
    // Some waters and islets lie beyond all border polygons.
    if (!position.country && regionCountry != none)
        position.country = regionCountry;
    position.isRegionSure =
        position.region && regionCountry == position.country &&
        !regions.nearestEdge(latitude, longitude, coastKm + regionPrecisionKm, position.region);
    return position;
}

/// Beyond water, or beyond the border of a first-level area.
bool isOnAnotherPieceOfLand(const Town& town, const Position& position) {
    return position.isRegionSure && town.region != none && town.region != *position.region;
}

bool isInAnotherArea(const Gazetteer& gazetteer, const Town& town, const Position& position) {
    return isOnAnotherPieceOfLand(town, position) &&
           gazetteer.regions()[town.region].area != gazetteer.regions()[*position.region].area;
}

/// How far from its centre a town is named.
double reachKm(const Town& town, const Position& position) {
    const double radius = double{town.radiusKm};
    if (!position.isAshore || isOnAnotherPieceOfLand(town, position))
        return radius + reachOverWaterKm;
    const double reach = town.population == 0 ? reachOfUncountedKm : shortestReachKm;
    return std::min(reach + radius * 1.5, longestReachKm);
}

/// The same, seen from the position: no town holds what lies in another first-level area.
double remotenessFrom(const Gazetteer& gazetteer, const Position& position, const Town& town, double km) {
    const double plain = remoteness(town, km);
    if (!isOnAnotherPieceOfLand(town, position))
        return plain;
    return position.isOnLand && isInAnotherArea(gazetteer, town, position)
               ? std::max(plain * otherAreaPenalty, 1.0)
               : plain * otherIslandPenalty;
}

/// The town to name.
Found bestTown(const Gazetteer& gazetteer, const UnitVector& point, const Position& position) {
    Found best;
    const double reach = position.country ? longestReachKm : countryByTownKm;
    gazetteer.townIndex().forEachWithin(point, reach, [&](const Town& town, double km) {
        if (km > reachKm(town, position))
            return;
        if (position.country && town.country != *position.country &&
            !(town.isOutsideItsBorders != 0 && km <= double{town.radiusKm} + coarseBorderKm))
            return;
        const double weighed = remotenessFrom(gazetteer, position, town, km);
        // The tie-break makes the answer independent of the order in which towns are found.
        if (weighed < best.remoteness ||
            (weighed == best.remoteness && town.population > best.town->population))
            best = {&town, km, weighed};
    });
    return best;
}

/// The nearest town of the same country and piece of land, to borrow its areas' names from.
Found nearestTown(const Gazetteer& gazetteer, const UnitVector& point, const Position& position) {
    Found best;
    gazetteer.townIndex().forEachWithin(point, firstLevelReachKm, [&](const Town& town, double km) {
        if (town.country == position.country && !isInAnotherArea(gazetteer, town, position) &&
            km < best.distanceKm)
            best = {&town, km, 0};
    });
    return best;
}

std::optional<std::string> nameOf(const Gazetteer& gazetteer, std::span<const std::uint32_t> areas,
                                  std::uint16_t area) {
    if (area >= areas.size())
        return std::nullopt;
    const std::string_view name = gazetteer.text(areas[area]);
    return name.empty() ? std::nullopt : std::optional(std::string(name));
}

/// What stands for the city far from towns.
std::optional<std::string> areaName(const Gazetteer& gazetteer, const UnitVector& point,
                                    const Position& position) {
    const Found found = nearestTown(gazetteer, point, position);
    if (found.town) {
        if (found.distanceKm <= secondLevelReachKm) {
            if (auto name = nameOf(gazetteer, gazetteer.secondLevelAreas(), found.town->secondLevel))
                return name;
        }
        if (auto name = nameOf(gazetteer, gazetteer.firstLevelAreas(), found.town->firstLevel))
            return name;
    }
    if (position.region && gazetteer.regions()[*position.region].country == position.country) {
        const std::string_view name = gazetteer.text(gazetteer.regions()[*position.region].name);
        if (!name.empty())
            return std::string(name);
    }
    return std::nullopt;
}

} // namespace

OfflineReverseGeocoder::OfflineReverseGeocoder(const std::filesystem::path& gazetteer,
                                               const std::filesystem::path& landBorders)
    : m_gazetteer(std::make_unique<const Gazetteer>(gazetteer, landBorders)) {}

OfflineReverseGeocoder::~OfflineReverseGeocoder() = default;

Placemark OfflineReverseGeocoder::placemark(const ProjectModel::Coordinate& coordinate,
                                            const std::stop_token& /*stop*/) {
    if (!isOnEarth(coordinate))
        return {};
    const Gazetteer& gazetteer = *m_gazetteer;
    const double latitude = std::clamp(coordinate.latitude, -northernmostLatitude, northernmostLatitude);
    const Position position = located(gazetteer, latitude, coordinate.longitude);
    const UnitVector point = unitVector(latitude, coordinate.longitude);

    Found found = bestTown(gazetteer, point, position);
    if (!found.town) {
        // Who stands on a summit between two countries came up from one of them.
        if (const auto neighbour =
                countryBeyondTheLine(gazetteer, latitude, coordinate.longitude, position.country)) {
            Position beyond = position;
            beyond.country = neighbour;
            found = bestTown(gazetteer, point, beyond);
        }
    }
    // An islet too small for the coastline is land all the same when a town stands beside the point.
    if (!position.isOnLand && !position.isCoastal && !found.town && latitude > southernmostSea)
        return {};

    Placemark result;
    const std::optional<std::uint16_t> country = found.town ? found.town->country : position.country;
    if (country)
        result.country = std::string(gazetteer.text(gazetteer.countries()[*country].name));
    if (found.town)
        result.city = std::string(gazetteer.text(found.town->name));
    else if (country)
        result.city = areaName(gazetteer, point, position);
    // Where a country has no parts, its one area is no news.
    if (!found.town && result.city == result.country)
        result.city.reset();
    return result;
}

} // namespace Analysis
