// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <Roamly/CommandLine/InspectedPhotos.h>
#include <Roamly/Platform/PictureDecoding.h>

namespace CommandLine {

std::optional<Foundation::Image> analysedPhoto(const std::filesystem::path& file) {
    constexpr int maxPixel = 1024;
    return Platform::pictureDecoding()->decode(file, maxPixel);
}

int inspectPhotos(
    const Invocation& invocation,
    const std::function<void(Foundation::JsonWriter&, const Foundation::Image&)>& writeMembers) {
    int status = ExitStatus::done;
    for (const std::string& file : invocation.arguments.positionals()) {
        Foundation::throwIfStopped(invocation.stop);
        const std::optional<Foundation::Image> image = analysedPhoto(file);
        invocation.console.result([&](Foundation::JsonWriter& json) {
            json.beginObject().member("file", Foundation::displayText(file));
            if (image)
                writeMembers(json, *image);
            json.endObject();
        });
        if (!image) {
            invocation.console.warn("“" + Foundation::displayText(file) + "” can’t be decoded.");
            status = ExitStatus::failed;
        }
    }
    return status;
}

} // namespace CommandLine
