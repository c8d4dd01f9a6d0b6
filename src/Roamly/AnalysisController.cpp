#include <Analysis/AnalysisPipeline.h>
#include <Analysis/Clock.h>
#include <Analysis/GeocodeCache.h>
#include <Analysis/LocationResolver.h>
#include <Roamly/AnalysisController.h>
#include <Roamly/AnalysisEngine.h>
#include <Roamly/AppImageProvider.h>

#include <algorithm>
#include <exception>
#include <unordered_map>
#include <utility>

namespace Roamly {

namespace {

using Analysis::PipelineProgress;

/// Enough to tell scenes, faces and sharpness.
constexpr int analysedPhotoMaxPixel = 1024;

class PhotoImages final : public Analysis::ImageProviding {
public:
    [[nodiscard]] std::optional<Foundation::Image> image(const ProjectModel::PhotoRef& ref) override {
        return m_provider.image(ref);
    }

private:
    AppImageProvider m_provider{analysedPhotoMaxPixel};
};

std::string photos(std::ptrdiff_t count) {
    return std::to_string(count) + (count == 1 ? " photo" : " photos");
}

} // namespace

ProjectModel::Project analyzeOnThisMachine(const ProjectModel::Project& project, const AppSettings& settings,
                                           const AnalysisController::Progress& progress,
                                           const std::stop_token& stop) {
    const Geocoding geocoding = makeGeocoding(settings);
    VisionEngine vision;
    Analysis::GeocodeCache cache{geocodeCacheFile()};
    Analysis::ContinuousClock clock;
    Analysis::LocationResolver resolver{cache, *geocoding.geocoder, geocoding.maxRequests, geocoding.window,
                                        clock};
    PhotoImages images;
    Analysis::AnalysisPipeline pipeline{resolver, images, vision.featurePrinter(), vision.qualityScorer()};
    ProjectModel::Project analysed = pipeline.analyze(project, progress, stop);
    cache.persist();
    return analysed;
}

AnalysisController::AnalysisController(std::function<void()> changed, Executor executor, Analyze analyze)
    : m_changed(std::move(changed))
    , m_executor(executor ? std::move(executor) : [](const std::function<void()>& action) { action(); })
    , m_analyze(analyze ? std::move(analyze) : analyzeOnThisMachine) {}

AnalysisController::~AnalysisController() {
    cancel();
    wait();
}

void AnalysisController::wait() {
    if (m_worker.joinable())
        m_worker.join();
}

void AnalysisController::post(std::function<void(State&)> change) {
    m_executor([this, change = std::move(change)] {
        change(m_state);
        if (m_changed)
            m_changed();
    });
}

std::string AnalysisController::describe(const PipelineProgress& progress) {
    const std::string count = std::to_string(progress.completed) + "/" + std::to_string(progress.total);
    switch (progress.stage) {
    case PipelineProgress::Stage::geocoding:
        return "Locating photos… " + count;
    case PipelineProgress::Stage::clustering:
        return "Finding duplicates… " + count;
    case PipelineProgress::Stage::scoring:
        return "Ranking best shots… " + count;
    case PipelineProgress::Stage::done:
        break;
    }
    return "Done";
}

void AnalysisController::merge(const ProjectModel::Project& analysed, ProjectModel::Project& project) {
    std::unordered_map<Foundation::Uuid, const ProjectModel::PhotoItem*> results;
    for (const ProjectModel::PhotoItem& photo : analysed.photos)
        results.try_emplace(photo.id, &photo);
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        const auto found = results.find(photo.id);
        if (found == results.end())
            continue;
        const ProjectModel::PhotoItem& result = *found->second;
        if (result.location && result.location != photo.location)
            project.applyProposedLocation(*result.location, photo.id);
        if (result.isSelected != photo.isSelected || result.clusterID != photo.clusterID ||
            result.qualityScore != photo.qualityScore)
            project.applyProposedSelection(result.isSelected, result.clusterID, result.qualityScore,
                                           photo.id);
    }
    project.applyChronologicalOrder();
}

AnalysisController::Issues AnalysisController::issues(const ProjectModel::Project& project) {
    const auto unlocated = [&](bool hasCoordinate) {
        return std::ranges::count_if(project.photos, [&](const ProjectModel::PhotoItem& photo) {
            return !photo.location && photo.coordinate.has_value() == hasCoordinate;
        });
    };
    Issues result;
    if (const std::ptrdiff_t count = unlocated(true); count > 0) {
        result.texts.push_back(photos(count) + " could not be geocoded — check your internet connection.");
        result.canRetry = true;
    }
    if (const std::ptrdiff_t count = unlocated(false); count > 0)
        result.texts.push_back(photos(count) + (count == 1 ? " has" : " have") + " no GPS location data.");
    return result;
}

void AnalysisController::run(ProjectDocument& document, const AppSettings& settings) {
    if (m_state.isRunning)
        return;
    wait();
    m_state = State{};
    m_state.isRunning = true;
    m_state.progressText = "Starting…";
    if (m_changed)
        m_changed();

    m_worker =
        std::jthread{[this, &document, settings, snapshot = document.project()](const std::stop_token& stop) {
            const auto finish = [this, stop](std::function<void(State&)> change) {
                post([change = std::move(change), stop](State& state) {
                    // What a cancelled run found is dropped.
                    state.wasCancelled = stop.stop_requested();
                    if (!state.wasCancelled)
                        change(state);
                    state.progressText.reset();
                    state.isRunning = false;
                });
            };
            try {
                ProjectModel::Project analysed = m_analyze(
                    snapshot, settings,
                    [this, stop](const PipelineProgress& progress) {
                        post([progress, stop](State& state) {
                            // A report that comes late must not bring the text back.
                            if (!state.isRunning || stop.stop_requested())
                                return;
                            state.progress = progress;
                            state.progressText = describe(progress);
                        });
                    },
                    stop);
                finish([&document, analysed = std::move(analysed)](State& state) {
                    document.edit([&](ProjectModel::Project& project) { merge(analysed, project); });
                    Issues found = issues(document.project());
                    state.issues = std::move(found.texts);
                    state.canRetry = found.canRetry;
                });
            } catch (const std::exception& error) {
                finish([text = std::string{error.what()}](State& state) { state.errorText = text; });
            }
        }};
}

void AnalysisController::requestStop() {
    m_worker.request_stop();
}

void AnalysisController::cancel() {
    if (!m_state.isRunning)
        return;
    requestStop();
    m_state.isRunning = false;
    m_state.wasCancelled = true;
    m_state.progressText.reset();
}

} // namespace Roamly
