#pragma once

#include <ProjectModel/Project.h>

#include <filesystem>

namespace CommandLine::OutputFile {

/// Refuses a file that cannot be written before any work is done: one without a name or folder, in a folder
/// that may not be written, write-protected, or something else than a regular file. Throws UsageError,
/// Failure.
void checkIsWritable(const std::filesystem::path& file);

/// Refuses to replace what the work is made from: the project's own file, its music, its photos. Throws
/// Failure.
void checkIsNoInput(const std::filesystem::path& file, const std::filesystem::path& projectFile,
                    const ProjectModel::Project& project);

} // namespace CommandLine::OutputFile
