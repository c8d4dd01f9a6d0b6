// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportPreset.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>
#include <Roamly/CommandLine/Command.h>
#include <Roamly/Document/AppSettings.h>

#include <filesystem>
#include <set>
#include <vector>

namespace CommandLine {

/// -o, --resolution and --codec, as every command that writes a movie takes them.
[[nodiscard]] std::vector<Option> exportOptions();

/// The preset that the options name, otherwise the user's. Throws UsageError.
[[nodiscard]] Export::ExportPreset exportPreset(const Arguments& arguments,
                                                const Document::AppSettings& settings);

/// Writes the movie with progress and says so. Returns the photos that are black in it. A
/// `OffscreenApplication` must exist. Throws Failure, Interrupted.
[[nodiscard]] std::set<Foundation::Uuid>
exportMovie(const ProjectModel::Project& project, const Document::AppSettings& settings,
            Export::ExportPreset preset, const std::filesystem::path& file, const Invocation& invocation);

} // namespace CommandLine
