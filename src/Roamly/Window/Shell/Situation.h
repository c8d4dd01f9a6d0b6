// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/AIProvider.h>
#include <Roamly/Document/AppSettings.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Window/Shell/Intent.h>

#include <cstddef>
#include <optional>
#include <string>

namespace Shell {

/// What of a window's state decides which actions there are. A plain value.
struct Situation {
    std::size_t photos = 0;
    /// In the film.
    std::size_t selected = 0;
    /// Chosen in the grid, for the actions on photos.
    std::size_t marked = 0;
    /// One photo is chosen, and it has similar shots.
    bool isMarkedInGroup = false;
    std::size_t missing = 0;
    std::optional<std::string> undoName;
    std::optional<std::string> redoName;
    bool isModified = false;
    bool hasFile = false;
    bool usesManualOrder = false;
    bool hasSources = false;
    bool hasMusic = false;
    bool allowsAICaptions = true;
    /// What generating captions would do, or why it is turned off.
    std::string captionsHelp = {};
    bool isImporting = false;
    bool isAnalyzing = false;
    bool isCaptioning = false;
    bool isExporting = false;

    friend bool operator==(const Situation&, const Situation&) = default;
};

/// What the document says of it; the rest is the window's to add.
[[nodiscard]] Situation situationOf(const Document::ProjectDocument& document,
                                    const Document::AppSettings& user);

/// How one action looks in a situation.
struct ActionState {
    bool isEnabled = true;
    /// In the place of the action's usual text: "Undo Remove 3 Photos".
    std::optional<std::string> text = {};
    /// In the place of the action's usual help: why it cannot be used, or what it will do just now.
    std::optional<std::string> help = {};

    friend bool operator==(const ActionState&, const ActionState&) = default;
};

/// What regenerating the caption of any one photo waits for; empty when it may be done.
[[nodiscard]] std::string whyNoCaption(Situation now);

[[nodiscard]] ActionState actionState(Intent intent, const Situation& situation);

} // namespace Shell
