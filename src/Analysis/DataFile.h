// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string_view>

namespace Analysis {

/// Where one of the files is that come with the program and are too large to be part of it: share/roamly
/// beside the folder of the running program, in a build tree as in an installation, else in the system's data
/// folders (XDG_DATA_DIRS). Where it is nowhere, the first of these, so that a complaint can name it.
[[nodiscard]] std::filesystem::path dataFile(std::string_view name);

} // namespace Analysis
