// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/Clock.h>
#include <Analysis/GeocodeCache.h>
#include <Analysis/LocationResolver.h>
#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Platform/AnalysisEngine.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

ProjectModel::Coordinate coordinate(const std::string& typed) {
    const std::size_t comma = typed.find(',');
    if (comma == std::string::npos)
        throw UsageError("“" + typed + "” is no position; it takes LATITUDE,LONGITUDE.");
    return {Values::number(typed.substr(0, comma), "the latitude"),
            Values::number(typed.substr(comma + 1), "the longitude")};
}

int run(const Invocation& invocation) {
    std::vector<ProjectModel::Coordinate> coordinates;
    for (const std::string& typed : invocation.arguments.positionals())
        coordinates.push_back(coordinate(typed));

    const Platform::Geocoding geocoding = Platform::makeGeocoding(Platform::SettingsStore{}.load());
    Analysis::ContinuousClock clock;
    for (const ProjectModel::Coordinate& position : coordinates) {
        Foundation::throwIfStopped(invocation.stop);
        // A cache of its own and without a file: each position is really looked up.
        Analysis::GeocodeCache cache{{}};
        Analysis::LocationResolver resolver{cache, *geocoding.geocoder, geocoding.maxRequests,
                                            geocoding.window, clock};
        const std::optional<ProjectModel::ResolvedLocation> location =
            resolver.resolve(position, invocation.stop);
        invocation.console.result([&](Foundation::JsonWriter& json) {
            json.beginObject();
            json.key("coordinate").beginObject();
            json.member("latitude", position.latitude).member("longitude", position.longitude).endObject();
            if (location) {
                json.key("location").beginObject();
                if (location->city)
                    json.member("city", *location->city);
                if (location->country)
                    json.member("country", *location->country);
                json.member("provenance", rawValue(location->provenance)).endObject();
            }
            json.endObject();
        });
    }
    return ExitStatus::done;
}

} // namespace

Command inspectPlaceCommand() {
    return {
        .name = "inspect place",
        .summary = "what a position on Earth is called",
        .usages = {"LAT,LON…"},
        .positionals = {{"LAT,LON", "a position in degrees, north and east positive", false, true}},
        .options = {},
        .details = "Prints one JSON object a line. Far out at sea there is neither city nor country.",
        .examples = {"roamly inspect place 48.8584,2.2945 -33.8568,151.2153"},
        .run = run,
    };
}

} // namespace CommandLine
