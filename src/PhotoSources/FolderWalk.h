#pragma once

#include <filesystem>
#include <stop_token>
#include <vector>

namespace PhotoSources {

/// The regular files below a folder, at any depth, and the links to such files, in the order of their paths
/// (compared folder by folder, byte by byte). Hidden entries are passed over; packages (folders that a
/// desktop shows as one document or program) are not entered, nor are links to folders; links that lead
/// nowhere and folders that cannot be read are passed over. The given folder itself is always entered,
/// whatever its name. Throws Foundation::Cancelled.
[[nodiscard]] std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder,
                                                            const std::stop_token& stop);

} // namespace PhotoSources
