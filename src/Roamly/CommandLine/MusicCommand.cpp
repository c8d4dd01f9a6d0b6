// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/Document/ProjectMusic.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const bool isNone = invocation.arguments.has("--none");
    const std::span<const std::string> files = invocation.arguments.positionalsFrom(1);
    if (isNone == !files.empty())
        throw UsageError(isNone ? "--none goes without a FILE." : "A FILE or --none is missing.");
    std::optional<ProjectModel::MusicSelection> music;
    if (!isNone) {
        music = Document::musicSelection(files[0]);
        if (!Document::isPlayable(files[0], invocation.stop))
            invocation.console.warn(Document::notPlayableWarning(files[0]));
    }
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        document.edit(music ? "Choose Music" : "Remove Music",
                      [&](ProjectModel::Project& project) { project.userSetMusic(music); });
    });
}

} // namespace

Command musicCommand() {
    return {
        .name = "music",
        .summary = "choose the music of a slideshow",
        .usages = {"PROJECT FILE", "PROJECT --none"},
        .positionals = {{"PROJECT", "the project file"}, {"FILE", "an audio file of any usual kind", true}},
        .options = {{"--none", {}, "no music"}},
        .details = "Music that is shorter than the slideshow begins again; it fades out with the last photo.",
        .examples = {"roamly music Lisbon.roamly ~/Music/fado.mp3", "roamly music Lisbon.roamly --none"},
        .run = run,
    };
}

} // namespace CommandLine
