// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace CommandLine {

/// A script that completes every command's words, options and files in bash; what packages install.
[[nodiscard]] std::string bashCompletion();

} // namespace CommandLine
