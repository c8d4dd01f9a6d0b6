// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/AIProvider.h>
#include <ProjectModel/ChapterStyle.h>

#include <optional>
#include <string>

namespace ProjectModel {

/// What one project sets differently from the user's defaults; an absent member means the default applies.
struct ProjectSettings {
    /// Seconds each photo is on screen; finite.
    std::optional<double> photoDuration;
    std::optional<bool> kenBurnsEnabled;
    std::optional<bool> captionsEnabled;
    std::optional<bool> aiCaptionsEnabled;
    std::optional<ChapterStyle> chapterStyle;
    std::optional<AIProvider> aiProvider;
    /// The user's guidance for generated captions.
    std::optional<std::string> captionPrompt;

    friend bool operator==(const ProjectSettings&, const ProjectSettings&) = default;
};

} // namespace ProjectModel
