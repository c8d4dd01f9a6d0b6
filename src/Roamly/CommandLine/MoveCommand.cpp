// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Counted.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/ReviewModel.h>

namespace CommandLine {

namespace {

void checkPosition(std::size_t position, std::size_t end, std::size_t count) {
    if (position >= end)
        throw UsageError("There is no position " + std::to_string(position) + " in a project of " +
                         counted(count, "photo") + "; positions are counted from 0.");
}

int run(const Invocation& invocation) {
    std::set<std::size_t> positions;
    for (const std::string& typed : invocation.arguments.positionalsFrom(1))
        positions.insert(Values::position(typed, "FROM"));
    const std::size_t destination = Values::position(invocation.arguments.requiredValue("--to"), "--to");
    return changeProject(invocation, [&](Document::ProjectDocument& document) {
        const std::size_t count = document.project().photos.size();
        for (const std::size_t position : positions)
            checkPosition(position, count, count);
        checkPosition(destination, count + 1, count);
        Document::ReviewModel{document}.movePhotos(positions, destination);
    });
}

} // namespace

Command moveCommand() {
    return {
        .name = "move",
        .summary = "reorder photos by hand",
        .usages = {"PROJECT FROM… --to POSITION"},
        .positionals = {{"PROJECT", "the project file"},
                        {"FROM", "the position of a photo to move, counted from 0", false, true}},
        .options = {{"--to", "POSITION",
                     "before the photo that stands there now; the list’s length means its end"}},
        .details =
            "The photos move as a block and keep their order. From then on the order is yours: imports no\n"
            "longer sort the photos by time.",
        .examples = {"roamly move Lisbon.roamly 0 1 --to 4"},
        .run = run,
    };
}

} // namespace CommandLine
