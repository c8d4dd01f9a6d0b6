// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace CommandLine {

/// What `roamly --version` prints.
[[nodiscard]] std::string versionText();

/// What `roamly --licences` adds: whose work comes along, and the licences of it in full. Throws
/// std::system_error when the file that says so is missing.
[[nodiscard]] std::string licencesText();

} // namespace CommandLine
