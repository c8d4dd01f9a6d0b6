#include <Captioning/FoundationModelsCaptioner.h>
#include <Captioning/OllamaCaptioner.h>
#include <Captioning/OpenRouterCaptioner.h>
#include <Foundation/Cancellation.h>
#include <Foundation/Text.h>
#include <Roamly/CaptionController.h>

#include <Http/Url.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace Roamly {

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

CaptionController::CaptionController(CaptionEnvironment environment, std::function<void()> changed,
                                     Executor executor)
    : m_environment(std::move(environment))
    , m_changed(std::move(changed))
    , m_executor(executor ? std::move(executor) : [](const std::function<void()>& action) { action(); }) {}

CaptionController::~CaptionController() {
    cancel();
    wait();
}

void CaptionController::cancel() {
    m_worker.request_stop();
}

void CaptionController::wait() {
    if (m_worker.joinable())
        m_worker.join();
}

void CaptionController::post(std::function<void(State&)> change) {
    m_executor([this, change = std::move(change)] {
        change(m_state);
        if (m_changed)
            m_changed();
    });
}

std::optional<std::string> CaptionController::guidance(const ProjectModel::Project& project,
                                                       const AppSettings& settings) {
    return project.settings.captionPrompt ? project.settings.captionPrompt : settings.captionPrompt;
}

Captioning::VisionSceneTagger CaptionController::sceneTagger(Captioning::ImageClassifier classify) {
    return {tagConfidence, mostTags, std::move(classify)};
}

std::string CaptionController::ollamaURL(const AppSettings& settings) {
    return Http::isHttpUrl(settings.ollamaBaseURL) ? settings.ollamaBaseURL
                                                   : Captioning::OllamaCaptioner::defaultBaseURL;
}

std::unique_ptr<Captioning::CaptionGenerating>
CaptionController::makeGenerator(AIProvider provider, const std::optional<std::string>& guidance,
                                 const AppSettings& settings, const CaptionEnvironment& environment) {
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
                              AIProvider provider, Job job, Finish finish) {
    wait();
    m_state = State{};
    m_state.isRunning = true;
    m_state.progressText = progressText;
    if (m_changed)
        m_changed();

    const AppSettings settings = m_environment.settings();
    std::shared_ptr<Captioning::CaptionGenerating> generator =
        makeGenerator(provider, guidance(project, settings), settings, m_environment);
    m_worker = std::jthread{
        [this, generator, job = std::move(job), finish = std::move(finish)](const std::stop_token& stop) {
            const Captioning::VisionSceneTagger tagger = sceneTagger(m_environment.classify);
            CaptionRun run = job(tagger, *generator, stop);
            run.cancelled = run.cancelled || stop.stop_requested();
            post([run = std::move(run), finish](State& state) {
                finish(run);
                state.run = run;
                state.progressText.reset();
                state.isRunning = false;
            });
        }};
}

void CaptionController::run(ProjectDocument& document, AIProvider provider) {
    if (m_state.isRunning)
        return;
    const ProjectModel::Project snapshot = document.project();
    const std::string backend{displayName(provider)};
    start(
        "Starting…", snapshot, provider,
        [this, snapshot](const Captioning::SceneTagging& tagger,
                         const Captioning::CaptionGenerating& generator, const std::stop_token& stop) {
            const Captioning::CaptionPipeline pipeline{tagger, generator, m_environment.image};
            return pipeline.generate(
                snapshot,
                [this](const CaptionProgress& progress) {
                    post([progress](State& state) {
                        state.progress = progress;
                        state.progressText = "Captioning… " + std::to_string(progress.completed) + "/" +
                                             std::to_string(progress.total);
                    });
                },
                stop);
        },
        [this, &document, backend](const CaptionRun& run) {
            if (!run.captions.empty()) {
                document.edit([&run](ProjectModel::Project& project) {
                    for (const auto& [id, caption] : run.captions)
                        project.applyGeneratedCaption(caption, id);
                });
            }
            m_state.errorText = batchErrorText(run, backend);
        });
}

void CaptionController::regenerate(const Foundation::Uuid& photoID, ProjectDocument& document,
                                   AIProvider provider) {
    if (m_state.isRunning)
        return;
    const std::vector<ProjectModel::PhotoItem>& photos = document.project().photos;
    const auto photo = std::ranges::find(photos, photoID, &ProjectModel::PhotoItem::id);
    if (photo == photos.end())
        return;
    const std::string backend{displayName(provider)};
    start(
        "Captioning…", document.project(), provider,
        [this, photoID, source = photo->source](const Captioning::SceneTagging& tagger,
                                                const Captioning::CaptionGenerating& generator,
                                                const std::stop_token& stop) {
            CaptionRun run;
            run.attempted = 1;
            try {
                if (const std::optional<Foundation::Image> image = m_environment.image(source))
                    run.captions[photoID] = generator.caption(*image, tagger.tags(*image), stop);
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
                document.edit([&](ProjectModel::Project& project) {
                    project.setGeneratedCaption(run.captions.at(photoID), photoID);
                });
            } else if (!run.cancelled) {
                m_state.errorText = run.firstFailure
                                        ? describe(*run.firstFailure, backend)
                                        : "Couldn’t caption that photo — its image couldn’t be loaded.";
            }
        });
}

} // namespace Roamly
