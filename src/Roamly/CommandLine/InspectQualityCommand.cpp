// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/BestShotSelector.h>
#include <Analysis/SharpnessScorer.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/InspectedPhotos.h>
#include <Roamly/Platform/AnalysisEngine.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    Platform::VisionEngine vision;
    return inspectPhotos(invocation, [&](Foundation::JsonWriter& json, const Foundation::Image& image) {
        const std::optional<double> variance = Analysis::SharpnessScorer::variance(image);
        const Analysis::ImageQuality quality = vision.qualityScorer().quality(image);
        const double sharpness = Analysis::BestShotSelector::sharpness(variance);
        if (variance)
            json.member("variance", *variance);
        json.member("sharpness", sharpness);
        json.member("aesthetics", quality.aesthetics);
        json.member("hasOpenEyedFace", quality.hasOpenEyedFace);
        json.member("score", Analysis::BestShotSelector::score(
                                 {quality.aesthetics, sharpness, quality.hasOpenEyedFace}));
    });
}

} // namespace

Command inspectQualityCommand() {
    return {
        .name = "inspect quality",
        .summary = "what the choice of the best shot is made by",
        .usages = {"FILE…"},
        .positionals = {{"FILE", "a photo", false, true}},
        .options = {},
        .details = "Prints one JSON object a line, in the order of the files.",
        .examples = {"roamly inspect quality IMG_1.jpg IMG_2.jpg"},
        .run = run,
    };
}

} // namespace CommandLine
