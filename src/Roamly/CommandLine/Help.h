#pragma once

#include <Roamly/CommandLine/Command.h>

#include <string>
#include <string_view>

namespace CommandLine {

/// What the program is and can do.
[[nodiscard]] std::string overview();

/// The commands of a group ("inspect").
[[nodiscard]] std::string groupHelp(std::string_view group);

/// Everything about one command.
[[nodiscard]] std::string commandHelp(const Command& command);

/// The options that every command has.
[[nodiscard]] std::span<const Option> commonOptions();

} // namespace CommandLine
