#include <Captioning/OpenRouterCaptioner.h>
#include <Captioning/URLSessionTransport.h>
#include <Roamly/AppImageProvider.h>
#include <Roamly/CaptionController.h>
#include <Roamly/KeychainStore.h>
#include <Roamly/SettingsStore.h>

#include <cstdlib>

namespace Roamly {

namespace {

/// More than any backend is sent, and what the analysis decodes too.
constexpr int captionedPhotoMaxPixel = 1024;

/// A company's gateway to the service may stand in for it.
std::string openRouterBaseURL() {
    const char* const chosen = std::getenv("ROAMLY_OPENROUTER_URL");
    return chosen != nullptr && Captioning::isHTTPURL(chosen)
               ? chosen
               : Captioning::OpenRouterCaptioner::defaultBaseURL;
}

} // namespace

std::string storedOpenRouterKey() {
    SettingsStore settings;
    return KeychainStore::load({[&settings] { return settings.legacyOpenRouterKey(); },
                                [&settings] { settings.removeLegacyOpenRouterKey(); }})
        .value_or("");
}

CaptionEnvironment systemCaptionEnvironment() {
    return {
        .settings = [] { return SettingsStore{}.load(); },
        .openRouterKey = storedOpenRouterKey,
        .image = [provider = AppImageProvider{captionedPhotoMaxPixel}](
                     const ProjectModel::PhotoRef& ref) { return provider.image(ref); },
        .classify = {},
        .transport = std::make_shared<Captioning::URLSessionTransport>(),
        .openRouterBaseURL = openRouterBaseURL(),
    };
}

} // namespace Roamly
