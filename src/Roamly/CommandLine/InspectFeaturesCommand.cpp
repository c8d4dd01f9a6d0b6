// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/InspectedPhotos.h>
#include <Roamly/Platform/AnalysisEngine.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    Platform::VisionEngine vision;
    return inspectPhotos(invocation, [&](Foundation::JsonWriter& json, const Foundation::Image& image) {
        const std::optional<std::vector<float>> features = vision.featurePrinter().features(image);
        if (!features)
            return;
        json.key("features").beginArray();
        for (const float feature : *features)
            json.value(static_cast<double>(feature));
        json.endArray();
    });
}

} // namespace

Command inspectFeaturesCommand() {
    return {
        .name = "inspect features",
        .summary = "the feature vectors by which duplicates are found",
        .usages = {"FILE…"},
        .positionals = {{"FILE", "a photo", false, true}},
        .options = {},
        .details =
            "Prints one JSON object a line, in the order of the files; one that can’t be decoded has no\n"
            "features, and the exit status is 1 then.",
        .examples = {"roamly inspect features IMG_1.jpg"},
        .run = run,
    };
}

} // namespace CommandLine
