#pragma once

#include <filesystem>

/// Where the program keeps what belongs to the user, by the XDG base directory specification: a variable that
/// holds no absolute path counts as unset.
namespace Platform::UserFolders {

/// What can be made anew: `$XDG_CACHE_HOME/app.roamly.Roamly`.
[[nodiscard]] std::filesystem::path caches();

/// The user's choices: `$XDG_CONFIG_HOME/app.roamly.Roamly`.
[[nodiscard]] std::filesystem::path settings();

} // namespace Platform::UserFolders
