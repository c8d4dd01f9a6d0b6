// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/SceneTagging.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/InspectedPhotos.h>
#include <Roamly/Jobs/CaptionController.h>
#include <Roamly/Platform/AnalysisEngine.h>
#include <Roamly/Platform/CaptionEngine.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    Platform::VisionEngine vision;
    const Captioning::VisionSceneTagger tagger = Jobs::CaptionController::sceneTagger(vision.classifier());
    return inspectPhotos(invocation, [&](Foundation::JsonWriter& json, const Foundation::Image& image) {
        json.key("tags").beginArray();
        for (const std::string& tag : tagger.tags(image))
            json.value(tag);
        json.endArray();
    });
}

} // namespace

Command inspectTagsCommand() {
    return {
        .name = "inspect tags",
        .summary = "what captions are told that photos show",
        .usages = {"FILE…"},
        .positionals = {{"FILE", "a photo", false, true}},
        .options = {},
        .details = "Prints one JSON object a line, in the order of the files.",
        .examples = {"roamly inspect tags IMG_1.jpg"},
        .run = run,
    };
}

} // namespace CommandLine
