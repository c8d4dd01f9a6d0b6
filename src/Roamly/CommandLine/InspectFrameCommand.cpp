// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/DisplayText.h>
#include <Frames/YuvFrame.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/OffscreenApplication.h>
#include <Roamly/CommandLine/ProjectTimeline.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/OutputFile.h>
#include <Roamly/Jobs/ExportController.h>
#include <Roamly/Platform/SlideshowFrames.h>
#include <Timeline/Playhead.h>

#include <QBuffer>
#include <QImage>
#include <string_view>
#include <system_error>

namespace CommandLine {

namespace {

QByteArray encodedPng(const Foundation::Image& picture) {
    const QImage image{picture.pixels.data(), picture.width, picture.height,
                       static_cast<qsizetype>(picture.width) * 3, QImage::Format_RGB888};
    QByteArray bytes;
    QBuffer buffer{&bytes};
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        throw Failure("The picture can’t be encoded.");
    return bytes;
}

int run(const Invocation& invocation) {
    const Arguments& arguments = invocation.arguments;
    const std::string& projectFile = arguments.positionals()[0];
    const double time = Values::number(arguments.requiredValue("--at"), "--at");
    const Frames::FrameSize size = Values::frameSize(arguments.value("--size").value_or("1920x1080"));
    const std::filesystem::path output = arguments.requiredValue("--output");
    Document::OutputFile::checkIsWritable(output);
    const ProjectTimeline loaded = loadTimeline(projectFile);
    Document::OutputFile::checkIsNoInput(output, projectFile, loaded.project);

    const OffscreenApplication application;
    const std::unique_ptr<Frames::FrameSource> frames =
        Platform::slideshowFrames(loaded.project, Jobs::ExportController::decodingBound(size.width));
    const Timeline::Playhead playhead{loaded.timeline, loaded.settings.crossfade};
    const std::shared_ptr<const Frames::YuvFrame> frame = frames->frame(playhead.state(time), size);
    if (!frame)
        throw Failure("The frame can’t be drawn.");
    const QByteArray png = encodedPng(Frames::toImage(*frame));
    try {
        Foundation::writeFileAtomically(output, {png.constData(), static_cast<std::size_t>(png.size())});
    } catch (const std::system_error& error) {
        throw Failure("“" + Foundation::displayText(output) +
                      "” can’t be written: " + error.code().message() + ".");
    }
    invocation.console.result([&](Foundation::JsonWriter& json) {
        JsonForms::write(json.beginObject().key("failedPhotoIDs"), frames->failedPhotoIDs());
        json.endObject();
    });
    return ExitStatus::done;
}

} // namespace

Command inspectFrameCommand() {
    return {
        .name = "inspect frame",
        .summary = "the picture of one instant, as the movie shows it",
        .usages = {"PROJECT --at T [--size WxH] -o FILE.png"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {{"--at", "T", "seconds from the beginning"},
                    {"--size", "WxH", "the picture’s size in pixels; otherwise 1920x1080"},
                    {"--output", "FILE.png", "the picture to write", 'o'}},
        .details = "Prints the photos that could not be drawn.",
        .examples = {"roamly inspect frame Lisbon.roamly --at 12.5 -o frame.png"},
        .run = run,
    };
}

} // namespace CommandLine
