// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

namespace CommandLine {

/// Becomes the program with the window, with these words after its name, and returns only when it cannot:
/// then it has told why and gives the exit status. Commands do not pay for the window's libraries that way.
[[nodiscard]] int openWindow(const std::vector<std::string>& words);

} // namespace CommandLine
