#pragma once

#include <ProjectModel/MusicSelection.h>

#include <filesystem>

namespace CommandLine {

/// The music that a file is. Throws Failure when there is no such file.
[[nodiscard]] ProjectModel::MusicSelection musicSelection(const std::filesystem::path& file);

} // namespace CommandLine
