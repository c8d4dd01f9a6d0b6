// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Command.h>

#include <string>
#include <string_view>
#include <vector>

namespace CommandLine {

/// What the program is and can do.
[[nodiscard]] std::string overview();

/// The commands of a group ("inspect").
[[nodiscard]] std::string groupHelp(std::string_view group);

/// Everything about one command.
[[nodiscard]] std::string commandHelp(const Command& command);

/// An option as it is typed: "-o, --output FILE".
[[nodiscard]] std::string optionText(const Option& option);

/// A summary as a sentence of its own.
[[nodiscard]] std::string sentence(std::string_view summary);

/// Rows of texts in columns, without a line end after the last. The last column is wrapped at the width of a
/// help text; a text far wider than the others of its column pushes the rest of its row to the next line.
[[nodiscard]] std::string columnText(const std::vector<std::vector<std::string>>& rows);

/// The options that every command has.
[[nodiscard]] std::span<const Option> commonOptions();

} // namespace CommandLine
