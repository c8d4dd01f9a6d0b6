// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <PhotoSources/ImageFileMetadata.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/JsonForms.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    for (const std::string& file : invocation.arguments.positionals()) {
        Foundation::throwIfStopped(invocation.stop);
        const PhotoSources::ImageFileMetadata metadata = PhotoSources::ImageFileMetadataReader::read(file);
        invocation.console.result([&](Foundation::JsonWriter& json) {
            json.beginObject();
            json.member("file", Foundation::displayText(file));
            JsonForms::writeMembers(json, metadata);
            json.endObject();
        });
    }
    return ExitStatus::done;
}

} // namespace

Command inspectMetadataCommand() {
    return {
        .name = "inspect metadata",
        .summary = "when and where photo files were taken",
        .usages = {"FILE…"},
        .positionals = {{"FILE", "a photo", false, true}},
        .options = {},
        .details =
            "Prints one JSON object a line, in the order of the files. What can’t be read is left out.",
        .examples = {"roamly inspect metadata ~/Pictures/Lisbon/*.jpg"},
        .run = run,
    };
}

} // namespace CommandLine
