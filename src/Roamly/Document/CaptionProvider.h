// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/AIProvider.h>
#include <ProjectModel/ProjectSettings.h>
#include <Roamly/Document/AppSettings.h>

#include <optional>
#include <string>
#include <string_view>

namespace Document {

/// Who writes a project's captions: the provider the project names, otherwise the user's default.
[[nodiscard]] ProjectModel::AIProvider effectiveProvider(const ProjectModel::ProjectSettings& project,
                                                         const AppSettings& user);

/// What the user must agree to before a provider is used that receives the photos. Whoever asks goes on only
/// after a clear yes.
struct PrivacyConfirmation {
    ProjectModel::AIProvider provider;
    std::string_view title;
    /// What happens to the photos.
    std::string message;
    /// What agreeing is called, "Use OpenRouter (cloud)".
    std::string agreement;

    friend bool operator==(const PrivacyConfirmation&, const PrivacyConfirmation&) = default;
};

/// Choosing a provider asks when photos begin to leave the computer with it. Going on with the cloud
/// provider, or leaving it, never asks.
[[nodiscard]] std::optional<PrivacyConfirmation> privacyConfirmation(ProjectModel::AIProvider chosen,
                                                                     ProjectModel::AIProvider inEffect);

/// What is shown for as long as a provider is in effect that receives the photos; nothing for the others.
[[nodiscard]] std::optional<std::string> privacyAlert(ProjectModel::AIProvider inEffect);

/// Whether captions may be generated: as the project says, otherwise as the user does.
[[nodiscard]] bool allowsAICaptions(const ProjectModel::ProjectSettings& project, const AppSettings& user);

/// What generating captions would do, or why it can't be done.
[[nodiscard]] std::string generateCaptionsHelp(const ProjectModel::ProjectSettings& project,
                                               const AppSettings& user);

/// Throws Refusal: aiCaptionsOff, with the same words.
void checkAllowsAICaptions(const ProjectModel::ProjectSettings& project, const AppSettings& user);

} // namespace Document
