// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/DuplicateClusterer.h>
#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/InspectedPhotos.h>
#include <Roamly/Platform/AnalysisEngine.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const std::vector<std::string>& files = invocation.arguments.positionals();
    Platform::VisionEngine vision;
    std::vector<std::optional<std::vector<float>>> features;
    for (const std::string& file : files) {
        Foundation::throwIfStopped(invocation.stop);
        const std::optional<Foundation::Image> image = analysedPhoto(file);
        features.push_back(image ? vision.featurePrinter().features(*image) : std::nullopt);
    }
    invocation.console.result([&](Foundation::JsonWriter& json) {
        json.beginObject();
        json.key("files").beginArray();
        for (const std::string& file : files)
            json.value(Foundation::displayText(file));
        json.endArray();
        json.key("distances").beginArray();
        for (const auto& a : features) {
            json.beginArray();
            for (const auto& b : features) {
                if (a && b)
                    json.value(Analysis::DuplicateClusterer::distance(*a, *b));
                else
                    json.null();
            }
            json.endArray();
        }
        json.endArray();
        json.endObject();
    });
    return ExitStatus::done;
}

} // namespace

Command inspectDistancesCommand() {
    return {
        .name = "inspect distances",
        .summary = "how much alike photos look to the search for duplicates",
        .usages = {"FILE…"},
        .positionals = {{"FILE", "a photo", false, true}},
        .options = {},
        .details =
            "Prints one JSON object with a table of distances, a row for each file. Below 0.5 two photos\n"
            "show the same scene; null stands where a photo can’t be decoded.",
        .examples = {"roamly inspect distances IMG_1.jpg IMG_2.jpg"},
        .run = run,
    };
}

} // namespace CommandLine
