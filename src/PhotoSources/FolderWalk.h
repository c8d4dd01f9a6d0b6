// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <stop_token>
#include <vector>

namespace PhotoSources {

/// The regular files below a folder, at any depth, in the order of their paths (compared folder by folder,
/// byte by byte). Hidden entries are passed over; packages (folders that a desktop shows as one document or
/// program) are not entered; folders that cannot be read are passed over. A symbolic link is neither a file
/// nor a folder, wherever it leads: a picture that is linked to is imported where it lies, and once. The
/// given folder itself is always entered, whatever its name, also through a link. Throws
/// Foundation::Cancelled.
[[nodiscard]] std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder,
                                                            const std::stop_token& stop);

} // namespace PhotoSources
