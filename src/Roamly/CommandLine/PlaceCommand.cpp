#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Reviewing.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/ReviewModel.h>

namespace CommandLine {

namespace {

/// An empty name is no name: it would show as a stray comma.
std::optional<std::string> placeName(const Arguments& arguments, std::string_view option) {
    const std::optional<std::string> typed = arguments.value(option);
    if (!typed || typed->empty())
        return std::nullopt;
    return Values::text(*typed, option);
}

int run(const Invocation& invocation) {
    const Arguments& arguments = invocation.arguments;
    const Foundation::Uuid id = Values::uuid(arguments.positionals()[1]);
    const std::optional<std::string> city = placeName(arguments, "--city");
    const std::optional<std::string> country = placeName(arguments, "--country");
    const bool isNamed = arguments.has("--city") || arguments.has("--country");
    if (arguments.has("--clear") && isNamed)
        throw UsageError("--clear goes with neither --city nor --country.");
    if (!arguments.has("--clear") && !city && !country)
        throw UsageError("A --city, a --country or --clear is missing.");
    return changeProject(invocation, [&](Roamly::ProjectDocument& document) {
        Roamly::ReviewModel{document}.setPlace(city, country, id);
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
                    {"--clear", {}, "the photo has no place"}},
        .details = "The place is yours and stays when the photos are analysed again.",
        .examples = {"roamly place Lisbon.roamly 6F9619FF-8B86-D011-B42D-00C04FC964FF --city Sintra "
                     "--country Portugal"},
        .run = run,
    };
}

} // namespace CommandLine
