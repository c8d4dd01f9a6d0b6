#pragma once

#include <ProjectModel/MusicSelection.h>
#include <ProjectModel/Project.h>

#include <filesystem>
#include <stop_token>

namespace CommandLine {

/// The music that a file is. Throws Failure when there is no such file.
[[nodiscard]] ProjectModel::MusicSelection musicSelection(const std::filesystem::path& file);

/// Whether a movie can play the file. Throws Foundation::Cancelled.
[[nodiscard]] bool isPlayable(const std::filesystem::path& file, const std::stop_token& stop);

/// Refuses work on a movie whose music cannot be played. Music that is not there any more is no reason: the
/// movie is silent then. Throws Failure, Foundation::Cancelled.
void checkMusicIsPlayable(const ProjectModel::Project& project, const std::stop_token& stop);

} // namespace CommandLine
