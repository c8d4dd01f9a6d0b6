// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/OpenRouterCaptioner.h>
#include <Captioning/URLSessionTransport.h>
#include <Http/Url.h>
#include <Roamly/Platform/AnalysisEngine.h>
#include <Roamly/Platform/AppImageProvider.h>
#include <Roamly/Platform/CaptionEngine.h>
#include <Roamly/Platform/OpenRouterKey.h>
#include <Roamly/Platform/SettingsStore.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <mutex>

namespace Platform {

namespace {

/// More than any backend is sent, and what the analysis decodes too.
constexpr int captionedPhotoMaxPixel = 1024;

/// A company's gateway to the service may stand in for it.
std::string openRouterBaseURL() {
    const char* const chosen = std::getenv("ROAMLY_OPENROUTER_URL");
    return chosen != nullptr && Http::isHttpUrl(chosen) ? chosen
                                                        : Captioning::OpenRouterCaptioner::defaultBaseURL;
}

/// Loads the networks when the first photo is classified. Without them photos have no scene tags.
Captioning::ImageClassifier lazyClassifier() {
    struct Loaded {
        std::once_flag once;
        std::unique_ptr<VisionEngine> engine;
        Captioning::ImageClassifier classify;
    };
    return [loaded = std::make_shared<Loaded>()](
               const Foundation::Image& image) -> std::optional<std::vector<Captioning::ClassObservation>> {
        std::call_once(loaded->once, [&] {
            try {
                loaded->engine = std::make_unique<VisionEngine>();
                loaded->classify = loaded->engine->classifier();
            } catch (const std::exception&) {
                // A missing file of the program is reported where it matters more, by the analysis.
                loaded->engine.reset();
            }
        });
        return loaded->classify ? loaded->classify(image) : std::nullopt;
    };
}

} // namespace

Jobs::CaptionEnvironment systemCaptionEnvironment() {
    return {
        .settings = [] { return SettingsStore{}.load(); },
        .openRouterKey = OpenRouterKey::stored,
        .image = [provider = AppImageProvider{captionedPhotoMaxPixel}](
                     const ProjectModel::PhotoRef& ref) { return provider.image(ref); },
        .classify = lazyClassifier(),
        .transport = std::make_shared<Captioning::URLSessionTransport>(),
        .openRouterBaseURL = openRouterBaseURL(),
    };
    // The functions own what they share.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
}

} // namespace Platform
