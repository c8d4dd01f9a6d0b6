#pragma once

#include <ProjectModel/AIProvider.h>
#include <ProjectModel/ProjectSettings.h>
#include <Roamly/Document/AppSettings.h>

#include <string>
#include <string_view>

namespace Document {

/// Who writes a project's captions: the provider the project names, otherwise the user's default.
[[nodiscard]] ProjectModel::AIProvider effectiveProvider(const ProjectModel::ProjectSettings& project,
                                                         const AppSettings& user);

/// True when choosing the provider means that photos begin to leave the machine, which the user must confirm
/// first. Going on with the cloud provider, or leaving it, never asks.
[[nodiscard]] bool needsPrivacyConfirmation(ProjectModel::AIProvider chosen,
                                            ProjectModel::AIProvider inEffect);

inline constexpr std::string_view privacyConfirmationTitle = "Privacy: photos leave your Mac";
/// What a run with a provider that receives the photos says while it begins.
[[nodiscard]] std::string privacyAlert(ProjectModel::AIProvider inEffect);
/// What the providers do with photos, for whoever chooses the one for all projects.
inline constexpr std::string_view providersNote =
    "Apple and Ollama caption on this Mac. OpenRouter sends each photo to the cloud.";
/// Why captions cannot be generated for a project that has them turned off.
inline constexpr std::string_view aiCaptionsAreOff =
    "Turn on “Generate captions with AI” in Project Settings first";
/// What the user has to know before confirming.
[[nodiscard]] std::string privacyConfirmationMessage(ProjectModel::AIProvider chosen);

} // namespace Document
