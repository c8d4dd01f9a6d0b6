// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/ReviewModel.h>

namespace CommandLine {

namespace {

std::optional<std::string> placeName(const Arguments& arguments, std::string_view option) {
    const std::optional<std::string> typed = arguments.value(option);
    return typed ? std::optional{Values::text(*typed, option)} : std::nullopt;
}

int run(const Invocation& invocation) {
    const Arguments& arguments = invocation.arguments;
    const Foundation::Uuid id = Values::uuid(arguments.positionals()[1]);
    const std::optional<std::string> city = placeName(arguments, "--city");
    const std::optional<std::string> country = placeName(arguments, "--country");
    const bool isNamed = city || country;
    if (arguments.has("--clear") && isNamed)
        throw UsageError("--clear goes with neither --city nor --country.");
    if (!arguments.has("--clear") && !isNamed)
        throw UsageError("A --city, a --country or --clear is missing.");
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        Document::ReviewModel{document}.setPlace(city, country, {id});
    });
}

} // namespace

Command placeCommand() {
    return {
        .name = "place",
        .summary = "say where a photo was taken",
        .usages = {"PROJECT ID [--city CITY] [--country COUNTRY]", "PROJECT ID --clear"},
        .positionals = {{"PROJECT", "the project file"}, {"ID", "the photo’s id"}},
        .options = {{"--city", "CITY", "the town; what is not given is unknown then"},
                    {"--country", "COUNTRY", "the country"},
                    {"--clear", {}, "take the photo’s place away"}},
        .details =
            "The place is yours and stays when the photos are analysed again. White space at the ends of\n"
            "the names is dropped; without a name that is left the photo has no place. A photo without a\n"
            "place may get one from the next analysis.",
        .examples = {"roamly place Lisbon.roamly 6F9619FF-8B86-D011-B42D-00C04FC964FF --city Sintra "
                     "--country Portugal"},
        .run = run,
    };
}

} // namespace CommandLine
