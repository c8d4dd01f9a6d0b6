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
/// No town is named farther from its centre than this, however large.
constexpr double longestReachKm = 40;
/// The reach of the smallest hamlet; that of a town grows with it.
constexpr double shortestReachKm = 18;
/// On the water, only the towns that one sees.
constexpr double longestReachAtSeaKm = 15;
/// How close the nearest town has to be so that its second-level area is likely the point's own.
constexpr double areaReachKm = 120;
/// Where there is no border polygon at all, a town this close tells the country.
constexpr double countryByTownKm = 10;
/// A town in the polygon of another country claims its own surroundings.
constexpr double coarseBorderKm = 2;
/// What a first-level border between point and town weighs.
constexpr double otherRegionPenalty = 1.5;

double reachKm(const Town& town) {
    return std::min(shortestReachKm + double{town.radiusKm} * 1.5, longestReachKm);
}

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
    bool isCoastal = false;
};

struct Found {
    const Town* town = nullptr;
    double distanceKm = std::numeric_limits<double>::infinity();
    double remoteness = std::numeric_limits<double>::infinity();
};

Position located(const Gazetteer& gazetteer, const ProjectModel::Coordinate& coordinate) {
    Position position;
    if (const auto shape = gazetteer.borders().shapeAt(coordinate.latitude, coordinate.longitude)) {
        const std::uint16_t country = gazetteer.borderShapes()[*shape];
        if (country != none)
            position.country = country;
    }
    position.region = gazetteer.regionLayer().shapeAt(coordinate.latitude, coordinate.longitude);
    position.isOnLand = position.region.has_value();
    if (!position.isOnLand) {
        const auto coast =
            gazetteer.regionLayer().nearestEdge(coordinate.latitude, coordinate.longitude, coastalWatersKm);
        if (coast) {
            position.isCoastal = true;
            position.region = coast->shape;
        }
    }
    return position;
}

bool isInAnotherRegion(const Town& town, const Position& position) {
    return position.region && town.region != none && town.region != *position.region;
}

/// The town to name.
Found bestTown(const Gazetteer& gazetteer, const UnitVector& point, const Position& position) {
    Found best;
    const double limit = position.isOnLand ? longestReachKm : longestReachAtSeaKm;
    gazetteer.townIndex().forEachWithin(point, limit, [&](const Town& town, double km) {
        if (km > reachKm(town))
            return;
        if (position.country) {
            if (town.country != *position.country && !(town.isOutsideItsBorders != 0 && km <= coarseBorderKm))
                return;
        } else if (km > countryByTownKm) {
            return;
        }
        double weighed = remoteness(town, km);
        if (isInAnotherRegion(town, position))
            weighed *= otherRegionPenalty;
        // The tie-break makes the answer independent of the order in which towns are found.
        if (weighed < best.remoteness ||
            (weighed == best.remoteness && town.population > best.town->population))
            best = {&town, km, weighed};
    });
    return best;
}

/// The nearest town of the same country, preferably of the same piece of land, to borrow its areas' names
/// from.
Found nearestTown(const Gazetteer& gazetteer, const UnitVector& point, const Position& position) {
    Found best;
    gazetteer.townIndex().forEachWithin(point, areaReachKm, [&](const Town& town, double km) {
        if (town.country != position.country)
            return;
        const double weighed = km + (isInAnotherRegion(town, position) ? areaReachKm : 0);
        if (weighed < best.remoteness)
            best = {&town, km, weighed};
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
    if (found.town && !isInAnotherRegion(*found.town, position)) {
        if (auto name = nameOf(gazetteer, gazetteer.secondLevelAreas(), found.town->secondLevel))
            return name;
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

OfflineReverseGeocoder::OfflineReverseGeocoder(const std::filesystem::path& gazetteer)
    : m_gazetteer(std::make_unique<const Gazetteer>(gazetteer)) {}

OfflineReverseGeocoder::~OfflineReverseGeocoder() = default;

Placemark OfflineReverseGeocoder::placemark(const ProjectModel::Coordinate& coordinate,
                                            const std::stop_token& /*stop*/) {
    if (!isOnEarth(coordinate))
        return {};
    const Gazetteer& gazetteer = *m_gazetteer;
    const Position position = located(gazetteer, coordinate);
    const UnitVector point = unitVector(coordinate.latitude, coordinate.longitude);

    const Found found = bestTown(gazetteer, point, position);
    // An islet too small for the coastline is land all the same when a town stands beside the point.
    if (!position.isOnLand && !position.isCoastal && !found.town)
        return {};

    Placemark result;
    const std::optional<std::uint16_t> country = found.town ? found.town->country : position.country;
    if (country)
        result.country = std::string(gazetteer.text(gazetteer.countries()[*country].name));
    if (found.town)
        result.city = std::string(gazetteer.text(found.town->name));
    else if (country)
        result.city = areaName(gazetteer, point, position);
    return result;
}

} // namespace Analysis
