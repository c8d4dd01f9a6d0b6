// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/ReviewModel.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const Foundation::Uuid id = Values::uuid(invocation.arguments.positionals()[1]);
    const std::string text = Values::text(invocation.arguments.positionals()[2], "TEXT");
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        Document::ReviewModel{document}.setCaption(text, id);
    });
}

} // namespace

Command titleCommand() {
    return {
        .name = "title",
        .summary = "write a photo’s caption",
        .usages = {"PROJECT ID TEXT"},
        .positionals = {{"PROJECT", "the project file"},
                        {"ID", "the photo’s id"},
                        {"TEXT", "the caption; an empty one (\"\") clears it"}},
        .options = {},
        .details =
            "The caption is yours and stays when captions are generated later. White space at its ends is\n"
            "dropped. A text that begins with a dash goes after “--”.",
        .examples = {"roamly title Lisbon.roamly 6F9619FF-8B86-D011-B42D-00C04FC964FF \"Tram 28, at last\""},
        .run = run,
    };
}

} // namespace CommandLine
