// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/MusicSelection.h>
#include <ProjectModel/Project.h>

#include <filesystem>
#include <stop_token>
#include <string>

namespace Document {

/// The music that a file is, whether it can be played or not. Throws Refusal: noMusic.
[[nodiscard]] ProjectModel::MusicSelection musicSelection(const std::filesystem::path& file);

/// Whether a movie can play the file: decodes its beginning, which takes a moment. Any thread. Throws
/// Foundation::Cancelled.
[[nodiscard]] bool isPlayable(const std::filesystem::path& file, const std::stop_token& stop);

/// What to tell whoever chooses music that is not playable.
[[nodiscard]] std::string notPlayableWarning(const std::filesystem::path& file);

/// Refuses work on a movie whose music cannot be played. Music that is not there any more is no reason: the
/// movie is silent then. Throws Refusal: musicNotPlayable; Foundation::Cancelled.
void checkMusicIsPlayable(const ProjectModel::Project& project, const std::stop_token& stop);

} // namespace Document
