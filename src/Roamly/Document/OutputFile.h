// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>

#include <filesystem>

/// What may be written where. Looks at the files named and changes nothing. Any thread.
namespace Document::OutputFile {

/// Refuses a file that cannot be written before any work is done: one without a name or folder, in a folder
/// that may not be written, write-protected, or something else than a regular file. Throws Refusal:
/// noFileName, outputNotWritable.
void checkIsWritable(const std::filesystem::path& file);

/// Refuses to replace what the work is made from: the project's own file, its music, its photos. Throws
/// Refusal: outputIsInput.
void checkIsNoInput(const std::filesystem::path& file, const std::filesystem::path& projectFile,
                    const ProjectModel::Project& project);

/// Refuses a movie of the project's own name, also before there is either. Throws Refusal: movieIsProject.
void checkIsNotTheProject(const std::filesystem::path& movie, const std::filesystem::path& projectFile);

} // namespace Document::OutputFile
