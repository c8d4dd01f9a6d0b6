// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>
#include <ProjectModel/PhotoRefreshes.h>

#include <filesystem>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

/// Where a project's photos are now. Photos of a library are left to their library.
namespace Platform::PhotoFiles {

using Refreshes = std::vector<ProjectModel::PhotoRefresh>;

/// Looks for every photo's file. The result has those only of which there is news: a file that is missing or
/// is back, and one that was renamed, moved or saved anew, with a bookmark that leads there at once. Throws
/// Foundation::Cancelled.
[[nodiscard]] Refreshes check(std::span<const ProjectModel::PhotoItem> photos, const std::stop_token& stop);

/// Finds missing photos by one file or folder that the user points to, and with it all that moved along: what
/// lies at the same place below the folder that moved, and what has the name and size, or the inode and size,
/// in the chosen folder or the chosen file's. What could be several files, and whose file could be several
/// photos', stays missing. `meant` is the photo that a chosen file is to be, whatever its name. The result
/// has the photos that were found. Throws Foundation::Cancelled.
[[nodiscard]] Refreshes locate(std::span<const ProjectModel::PhotoItem> photos,
                               const std::filesystem::path& chosen,
                               const std::optional<Foundation::Uuid>& meant, const std::stop_token& stop);

} // namespace Platform::PhotoFiles
