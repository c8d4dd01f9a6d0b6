// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/VideoExporter.h>
#include <Foundation/Cancellation.h>
#include <Roamly/Jobs/ExportController.h>
#include <Timeline/TimelineBuilder.h>

#include <utility>

namespace Jobs {

namespace {

constexpr int framesPerSecond = 30;

} // namespace

ExportController::ExportController(Executor executor, FrameSourceFactory makeFrameSource,
                                   std::function<void()> changed)
    : m_changed(std::move(changed))
    , m_makeFrameSource(std::move(makeFrameSource))
    , m_job(std::move(executor), Job::WhenStopped::RunOut) {}

void ExportController::changed() const {
    if (m_changed)
        m_changed();
}

void ExportController::exportMovie(const ProjectModel::Project& project,
                                   const Timeline::EffectiveSettings& settings, Export::ExportPreset preset,
                                   const std::filesystem::path& path) {
    if (m_job.isRunning())
        return;
    m_state = State{};
    m_state.isExporting = true;
    m_state.stageText = preparing;
    m_job.start(
        [this, makeFrameSource = m_makeFrameSource, project, settings, preset, path](const Job::Run& run) {
            const std::unique_ptr<Frames::FrameSource> frames =
                makeFrameSource(project, decodingBound(preset.dimensions().width));
            Export::VideoExporter exporter{Timeline::TimelineBuilder::build(project, settings), preset,
                                           settings.crossfade, *frames, framesPerSecond};
            const auto show = [this, &run](const Export::ExportProgress& progress) {
                run.post([this, progress] {
                    m_state.progress = progress.fraction;
                    m_state.stageText = progress.stage;
                    changed();
                });
            };
            Export::ExportResult result;
            try {
                result = exporter.exportMovie(path, show, run.stop());
            } catch (const Export::ExportError& error) {
                if (error.kind() == Export::ExportError::Kind::cancelled)
                    throw Foundation::Cancelled{};
                throw;
            }
            return [this, result, path] {
                m_state.stageText = "Saved";
                m_state.savedPath = path;
                m_state.failedPhotoIDs = result.failedPhotoIDs;
            };
        },
        [this](const Job::Ending& ending) {
            if (!m_state.savedPath) {
                m_state.wasCancelled = ending.wasStopped;
                m_state.errorText =
                    ending.wasStopped ? "Export cancelled." : "Export failed: " + ending.failure.value_or("");
            }
            m_state.isStopping = false;
            m_state.isExporting = false;
            changed();
        });
    changed();
}

void ExportController::cancel() {
    if (!m_job.stop())
        return;
    m_state.isStopping = true;
    changed();
}

std::optional<std::string> ExportController::failedPhotosSentence(std::size_t count) {
    if (count == 0)
        return std::nullopt;
    return std::to_string(count) + (count == 1 ? " photo" : " photos") +
           " couldn't be loaded and appear black in the video.";
}

} // namespace Jobs
