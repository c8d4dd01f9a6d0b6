// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The table of settings as help texts and completion show it.
namespace CommandLine::SettingsHelp {

[[nodiscard]] std::vector<std::string_view> userNames();
[[nodiscard]] std::vector<std::string_view> projectNames();

/// A setting a line: name, default, what it takes and does.
[[nodiscard]] std::string userTable();
/// The same without defaults, for those that a project may have of its own.
[[nodiscard]] std::string projectTable();

} // namespace CommandLine::SettingsHelp
