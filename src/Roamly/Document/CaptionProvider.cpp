// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Words.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Document/Refusal.h>

namespace Document {

namespace Words = ProjectModel::Words;

using ProjectModel::AIProvider;
using ProjectModel::ProjectSettings;

AIProvider effectiveProvider(const ProjectSettings& project, const AppSettings& user) {
    return project.aiProvider.value_or(user.defaultAIProvider);
}

std::optional<PrivacyConfirmation> privacyConfirmation(AIProvider chosen, AIProvider inEffect) {
    if (!sendsPhotosToCloud(chosen) || chosen == inEffect)
        return std::nullopt;
    const std::string name{displayName(chosen)};
    return PrivacyConfirmation{chosen, Words::privacyTitle, name + std::string{Words::privacyMessageEnd},
                               "Use " + name};
}

std::optional<std::string> privacyAlert(AIProvider inEffect) {
    if (!sendsPhotosToCloud(inEffect))
        return std::nullopt;
    return "Privacy alert — Photos are sent to " + std::string{displayName(inEffect)};
}

bool allowsAICaptions(const ProjectSettings& project, const AppSettings& user) {
    return project.aiCaptionsEnabled.value_or(user.aiCaptionsEnabled);
}

std::string generateCaptionsHelp(const ProjectSettings& project, const AppSettings& user) {
    if (!allowsAICaptions(project, user))
        return "Turn on “Generate captions with AI” in Project Settings first";
    return "Generate captions for the selected photos with " +
           std::string{displayName(effectiveProvider(project, user))};
}

void checkAllowsAICaptions(const ProjectSettings& project, const AppSettings& user) {
    if (!allowsAICaptions(project, user))
        throw Refusal(Refusal::Kind::aiCaptionsOff, generateCaptionsHelp(project, user));
}

} // namespace Document
