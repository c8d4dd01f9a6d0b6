// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/OpenWindow.h>
#include <Roamly/CommandLine/Values.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const std::string& file = invocation.arguments.positionals()[0];
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored))
        throw Failure("There is no file “" + file + "”.");
    std::vector<std::string> words{"--play"};
    if (const auto from = invocation.arguments.value("--from")) {
        if (Values::number(*from, "--from") < 0)
            throw UsageError("--from takes a time from the film's beginning, not “" + *from + "”.");
        words.push_back("--from=" + *from);
    }
    if (invocation.arguments.has("--window"))
        words.emplace_back("--window");
    words.emplace_back("--");
    words.push_back(file);
    return openWindow(words);
}

} // namespace

Command playCommand() {
    return {
        .name = "play",
        .summary = "play the slideshow on the screen",
        .usages = {"PROJECT [--from T] [--window]"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {{.name = "--from", .value = "T", .help = "seconds from the beginning to start at"},
                    {.name = "--window", .help = "in a window instead of the whole screen"}},
        .details = "Opens just the player and starts it.",
        .examples = {"roamly play Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
