// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/FoundationModelsCaptioner.h>
#include <Captioning/OllamaCaptioner.h>
#include <Captioning/OpenRouterCaptioner.h>
#include <Foundation/Cancellation.h>
#include <Foundation/Text.h>
#include <Http/Url.h>
#include <Roamly/Jobs/CaptionController.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace Jobs {

namespace {

using Captioning::CaptionError;
using Captioning::CaptionProgress;
using Captioning::CaptionRun;
using ProjectModel::AIProvider;

constexpr float tagConfidence = 0.1F;
constexpr int mostTags = 6;

template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

/// What the user is told after a batch; nothing when all is well.
std::optional<std::string> batchErrorText(const CaptionRun& run, const std::string& backend) {
    if (run.cancelled)
        return std::nullopt;
    if (run.firstFailure)
        return CaptionController::describe(*run.firstFailure, backend);
    const auto captioned = static_cast<int>(run.captions.size());
    if (captioned < run.attempted) {
        return std::to_string(run.attempted - captioned) + " of " + std::to_string(run.attempted) +
               " photos couldn’t be captioned (their images couldn’t be loaded).";
    }
    return std::nullopt;
}

} // namespace

CaptionController::CaptionController(Executor executor, CaptionEnvironment environment,
                                     std::function<void()> changed)
    : m_environment(std::make_shared<const CaptionEnvironment>(std::move(environment)))
    , m_changed(std::move(changed))
    , m_job(std::move(executor), Job::WhenStopped::RunOut) {}

void CaptionController::changed() const {
    if (m_changed)
        m_changed();
}

void CaptionController::cancel() {
    if (!m_job.stop())
        return;
    m_state.isStopping = true;
    changed();
}

std::optional<std::string> CaptionController::guidance(const ProjectModel::ProjectSettings& project,
                                                       const Document::AppSettings& settings) {
    return project.captionPrompt ? project.captionPrompt : settings.captionPrompt;
}

Captioning::VisionSceneTagger CaptionController::sceneTagger(Captioning::ImageClassifier classify) {
    return {tagConfidence, mostTags, std::move(classify)};
}

std::string CaptionController::ollamaURL(const Document::AppSettings& settings) {
    return Http::isHttpUrl(settings.ollamaBaseURL) ? settings.ollamaBaseURL
                                                   : Captioning::OllamaCaptioner::defaultBaseURL;
}

std::unique_ptr<Captioning::CaptionGenerating>
CaptionController::makeGenerator(AIProvider provider, const std::optional<std::string>& guidance,
                                 const Document::AppSettings& settings,
                                 const CaptionEnvironment& environment) {
    switch (provider) {
    case AIProvider::ollama:
        return std::make_unique<Captioning::OllamaCaptioner>(ollamaURL(settings), settings.ollamaModel,
                                                             guidance, environment.transport);
    case AIProvider::openRouter:
        return std::make_unique<Captioning::OpenRouterCaptioner>(
            environment.openRouterKey(), settings.openRouterModel, guidance, environment.transport,
            environment.openRouterBaseURL);
    case AIProvider::apple:
        break;
    }
    return std::make_unique<Captioning::FoundationModelsCaptioner>();
}

std::string CaptionController::describe(const CaptionError& error, const std::string& backend) {
    return std::visit(
        Overloaded{
            [](const Captioning::BackendUnavailable& unavailable) { return unavailable.message; },
            [&](const Captioning::HttpFailure& failure) {
                return backend + " returned HTTP " + std::to_string(failure.status) +
                       ". Check the model name and URL in Settings.";
            },
            [&](const Captioning::TransportFailure& failure) {
                return "Couldn’t reach " + backend + " — is the server running at the URL in Settings? (" +
                       failure.detail + ")";
            },
            [&](const Captioning::EmptyResponse&) {
                return backend + " returned an empty caption. Try a different model in Settings.";
            },
        },
        error.which());
}

void CaptionController::start(const std::string& progressText, const ProjectModel::Project& project,
                              AIProvider provider, Captioned captioned, Finish finish) {
    m_state = State{};
    m_state.isRunning = true;
    m_state.progressText = progressText;
    m_job.start(
        [this, environment = m_environment, ownGuidance = project.settings, provider,
         captioned = std::move(captioned), finish = std::move(finish)](const Job::Run& run) {
            const Document::AppSettings settings = environment->settings();
            const std::unique_ptr<Captioning::CaptionGenerating> generator =
                makeGenerator(provider, guidance(ownGuidance, settings), settings, *environment);
            const Captioning::VisionSceneTagger tagger = sceneTagger(environment->classify);
            CaptionRun result = captioned(tagger, *generator, run);
            result.cancelled = result.cancelled || run.stop().stop_requested();
            return [this, result = std::move(result), finish] {
                finish(result);
                m_state.run = result;
            };
        },
        [this](const Job::Ending& ending) {
            if (ending.failure)
                m_state.errorText = ending.failure;
            m_state.progressText.reset();
            m_state.isStopping = false;
            m_state.isRunning = false;
            changed();
        });
    changed();
}

void CaptionController::run(Document::ProjectDocument& document, AIProvider provider) {
    if (m_job.isRunning())
        return;
    const std::string backend{displayName(provider)};
    start(
        "Starting…", document.project(), provider,
        [this, environment = m_environment,
         snapshot = document.project()](const Captioning::SceneTagging& tagger,
                                        const Captioning::CaptionGenerating& generator, const Job::Run& run) {
            const Captioning::CaptionPipeline pipeline{tagger, generator, environment->image};
            return pipeline.generate(
                snapshot,
                [this, &run](const CaptionProgress& progress) {
                    run.post([this, progress] {
                        m_state.progress = progress;
                        m_state.progressText = "Captioning… " + std::to_string(progress.completed) + "/" +
                                               std::to_string(progress.total);
                        changed();
                    });
                },
                run.stop());
        },
        [this, &document, backend](const CaptionRun& run) {
            if (!run.captions.empty())
                document.edit("Generate Captions", [&run](ProjectModel::Project& project) {
                    project.applyGeneratedCaptions(run.captions);
                });
            m_state.errorText = batchErrorText(run, backend);
        });
}

void CaptionController::regenerate(const Foundation::Uuid& photoID, Document::ProjectDocument& document,
                                   AIProvider provider) {
    if (m_job.isRunning())
        return;
    const std::vector<ProjectModel::PhotoItem>& photos = document.project().photos;
    const auto photo = std::ranges::find(photos, photoID, &ProjectModel::PhotoItem::id);
    if (photo == photos.end())
        return;
    const std::string backend{displayName(provider)};
    start(
        "Captioning…", document.project(), provider,
        [environment = m_environment, photoID,
         source = photo->source](const Captioning::SceneTagging& tagger,
                                 const Captioning::CaptionGenerating& generator, const Job::Run& job) {
            CaptionRun run;
            run.attempted = 1;
            try {
                if (const std::optional<Foundation::Image> image = environment->image(source))
                    run.captions[photoID] =
                        generator.caption(*image, Captioning::SceneTags{tagger, *image}, job.stop());
            } catch (const Foundation::Cancelled&) {
                run.cancelled = true;
            } catch (const CaptionError& error) {
                run.firstFailure = error;
            } catch (const std::exception& error) {
                run.firstFailure = CaptionError{Captioning::TransportFailure{error.what()}};
            }
            return run;
        },
        [this, &document, photoID, backend](const CaptionRun& run) {
            if (!run.captions.empty()) {
                document.edit("Regenerate Caption", [&](ProjectModel::Project& project) {
                    project.setGeneratedCaption(run.captions.at(photoID), photoID);
                });
            } else if (!run.cancelled) {
                m_state.errorText = run.firstFailure
                                        ? describe(*run.firstFailure, backend)
                                        : "Couldn’t caption that photo — its image couldn’t be loaded.";
            }
        });
}

} // namespace Jobs
