// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Arguments.h>
#include <Roamly/CommandLine/Console.h>
#include <Roamly/CommandLine/ExitStatus.h>
#include <Roamly/Document/AppSettings.h>

#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace CommandLine {

/// One call of a command.
struct Invocation {
    const Arguments& arguments;
    Console& console;
    std::stop_token stop;
};

/// A command is one of these, made by one function in a file of its own and listed in `commands()`. Parsing,
/// help, interruption and the answers to errors are the same for all.
struct Command {
    /// One word, or two for a member of a group: "inspect timeline".
    std::string_view name;
    /// For the list of commands.
    std::string_view summary;
    /// What follows the name, a line for each way of calling it.
    std::vector<std::string_view> usages;
    std::vector<Positional> positionals;
    /// Without --json and --help, which every command has.
    std::vector<Option> options;
    /// What else a newcomer should know.
    std::string details = {};
    std::vector<std::string_view> examples = {};
    /// Returns an ExitStatus, or throws UsageError, Failure, Document::Refusal, Foundation::Cancelled or any
    /// std::exception whose text is a sentence.
    std::function<int(const Invocation&)> run;
};

} // namespace CommandLine
