#pragma once

#include <filesystem>
#include <string>

namespace PhotoSources {

/// The file's name with its extension, to show and to store: always valid UTF-8. File names are bytes; those
/// that are not UTF-8 come out as U+FFFD.
[[nodiscard]] std::string displayName(const std::filesystem::path& path);

} // namespace PhotoSources
