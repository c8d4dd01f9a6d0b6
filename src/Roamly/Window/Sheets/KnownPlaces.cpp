// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/KnownPlaces.h>
#include <Roamly/Window/Sheets/Labels.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Sheets {

namespace {

using Counts = std::map<QString, int>;

QStringList byFrequency(const Counts& counts) {
    std::vector<std::pair<QString, int>> entries{counts.begin(), counts.end()};
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    QStringList names;
    for (const auto& [name, count] : entries)
        names.append(name);
    return names;
}

} // namespace

KnownPlaces knownPlaces(const ProjectModel::Project& project) {
    Counts cities;
    Counts countries;
    std::map<QString, Counts> countriesOfCity;
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        if (!photo.location)
            continue;
        const auto& [city, country, provenance] = *photo.location;
        if (city && !city->empty())
            ++cities[toText(*city)];
        if (country && !country->empty())
            ++countries[toText(*country)];
        if (city && country && !city->empty() && !country->empty())
            ++countriesOfCity[toText(*city)][toText(*country)];
    }
    KnownPlaces places{
        .cities = byFrequency(cities), .countries = byFrequency(countries), .countryOfCity = {}};
    for (const auto& [city, counts] : countriesOfCity)
        places.countryOfCity[city] = byFrequency(counts).first();
    return places;
}

} // namespace Sheets
