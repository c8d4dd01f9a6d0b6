#include <Roamly/Document/CaptionProvider.h>

namespace Document {

using ProjectModel::AIProvider;

AIProvider effectiveProvider(const ProjectModel::ProjectSettings& project, const AppSettings& user) {
    return project.aiProvider.value_or(user.defaultAIProvider);
}

bool needsPrivacyConfirmation(AIProvider chosen, AIProvider inEffect) {
    return sendsPhotosToCloud(chosen) && chosen != inEffect;
}

std::string privacyAlert(AIProvider inEffect) {
    return "Privacy alert — Photos are sent to " + std::string{displayName(inEffect)};
}

std::string privacyConfirmationMessage(AIProvider chosen) {
    return std::string{displayName(chosen)} + " captions in the cloud. Each selected photo is uploaded to "
                                              "generate its caption — it does not stay on "
                                              "your Mac. Apple and Ollama caption locally instead.";
}

} // namespace Document
