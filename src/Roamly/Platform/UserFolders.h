// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

/// Where the program keeps what belongs to the user, by the XDG base directory specification: a variable that
/// holds no absolute path counts as unset.
namespace Platform::UserFolders {

/// What can be made anew: `$XDG_CACHE_HOME/app.roamly.Roamly`.
[[nodiscard]] std::filesystem::path caches();

/// The user's choices: `$XDG_CONFIG_HOME/app.roamly.Roamly`.
[[nodiscard]] std::filesystem::path settings();

/// What should outlast a restart and is nobody's choice, such as lists of recent files:
/// `$XDG_STATE_HOME/app.roamly.Roamly`.
[[nodiscard]] std::filesystem::path state();

/// What the programs of the desktop keep together: `$XDG_DATA_HOME` itself.
[[nodiscard]] std::filesystem::path sharedData();

} // namespace Platform::UserFolders
