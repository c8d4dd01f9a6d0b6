#include <Export/VideoExporter.h>
#include <Foundation/Cancellation.h>
#include <Roamly/AppImageProvider.h>
#include <Roamly/ExportController.h>
#include <Roamly/SlideshowFrameSource.h>
#include <Timeline/TimelineBuilder.h>

#include <exception>
#include <utility>

namespace Roamly {

namespace {

constexpr int framesPerSecond = 30;
/// Photos kept decoded at a time: the two of a dissolve, and those that are being prepared.
constexpr std::size_t photoCacheLimit = 6;

} // namespace

ExportController::ExportController(std::function<void()> changed, Executor executor,
                                   FrameSourceFactory makeFrameSource)
    : m_changed(std::move(changed))
    , m_executor(executor ? std::move(executor) : [](const std::function<void()>& task) { task(); })
    , m_makeFrameSource(std::move(makeFrameSource)) {}

ExportController::~ExportController() {
    cancel();
    wait();
}

std::unique_ptr<Export::FrameSource>
ExportController::slideshowFrameSource(const ProjectModel::Project& project, int maxPixel) {
    return std::make_unique<SlideshowFrameSource>(
        project,
        [provider = AppImageProvider{maxPixel}](const ProjectModel::PhotoRef& ref) {
            return provider.image(ref);
        },
        photoCacheLimit);
}

void ExportController::post(std::function<void(State&)> change) {
    m_executor([this, change = std::move(change)] {
        change(m_state);
        if (m_changed)
            m_changed();
    });
}

void ExportController::exportProject(const ProjectModel::Project& project,
                                     const Timeline::EffectiveSettings& settings, Export::ExportPreset preset,
                                     const std::filesystem::path& path) {
    wait();
    m_state = State{};
    m_state.isExporting = true;
    m_state.stageText = preparing;
    if (m_changed)
        m_changed();

    m_worker = std::jthread{[this, project, settings, preset, path](const std::stop_token& stop) {
        const auto fail = [this](std::string text, bool wasCancelled) {
            post([text = std::move(text), wasCancelled](State& state) {
                state.errorText = text;
                state.wasCancelled = wasCancelled;
                state.isExporting = false;
            });
        };
        try {
            const std::unique_ptr<Export::FrameSource> frames =
                m_makeFrameSource(project, decodingBound(preset.dimensions().width));
            Export::VideoExporter exporter{Timeline::TimelineBuilder::build(project, settings), preset,
                                           settings.crossfade, *frames, framesPerSecond};
            const Export::ExportResult result = exporter.exportTo(
                path,
                [this](const Export::ExportProgress& progress) {
                    post([progress](State& state) {
                        state.progress = progress.fraction;
                        state.stageText = progress.stage;
                    });
                },
                stop);
            post([result, path](State& state) {
                state.stageText = "Saved";
                state.savedPath = path;
                state.failedPhotoIDs = result.failedPhotoIDs;
                state.isExporting = false;
            });
        } catch (const Foundation::Cancelled&) {
            fail("Export cancelled.", true);
        } catch (const Export::ExportError& error) {
            if (error.kind() == Export::ExportError::Kind::cancelled)
                fail("Export cancelled.", true);
            else
                fail(std::string{"Export failed: "} + error.what(), false);
        } catch (const std::bad_alloc&) {
            fail("Export failed: There is not enough memory.", false);
        } catch (const std::exception& error) {
            fail(std::string{"Export failed: "} + error.what(), false);
        }
    }};
}

void ExportController::cancel() {
    m_worker.request_stop();
}

void ExportController::wait() {
    if (m_worker.joinable())
        m_worker.join();
}

std::optional<std::string> ExportController::failedPhotosSentence(std::size_t count) {
    if (count == 0)
        return std::nullopt;
    return std::to_string(count) + (count == 1 ? " photo" : " photos") +
           " couldn't be loaded and appear black in the video.";
}

} // namespace Roamly
