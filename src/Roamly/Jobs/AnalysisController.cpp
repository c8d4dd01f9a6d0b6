// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/AnalysisController.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Jobs {

namespace {

using Analysis::PipelineProgress;

std::string photos(std::ptrdiff_t count) {
    return std::to_string(count) + (count == 1 ? " photo" : " photos");
}

} // namespace

AnalysisController::AnalysisController(Executor executor, Analyze analyze, std::function<void()> changed)
    : m_changed(std::move(changed))
    , m_analyze(std::move(analyze))
    , m_job(std::move(executor), Job::WhenStopped::Drop) {}

void AnalysisController::changed() const {
    if (m_changed)
        m_changed();
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
    project.applyAnalysis(analysed);
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

void AnalysisController::run(Document::ProjectDocument& document, const Document::AppSettings& settings) {
    if (m_job.isRunning())
        return;
    m_state = State{};
    m_state.isRunning = true;
    m_state.progressText = "Starting…";
    m_job.start(
        [this, &document, settings, analyze = m_analyze, snapshot = document.project()](const Job::Run& run) {
            const auto show = [this, &run](const PipelineProgress& progress) {
                run.post([this, progress] {
                    m_state.progress = progress;
                    m_state.progressText = describe(progress);
                    changed();
                });
            };
            ProjectModel::Project analysed = analyze(snapshot, settings, show, run.stop());
            return [this, &document, analysed = std::move(analysed)] {
                document.edit("Analyze", [&](ProjectModel::Project& project) { merge(analysed, project); });
                Issues found = issues(document.project());
                m_state.issues = std::move(found.texts);
                m_state.canRetry = found.canRetry;
            };
        },
        [this](const Job::Ending& ending) {
            m_state.isRunning = false;
            m_state.progressText.reset();
            m_state.wasCancelled = ending.wasStopped;
            m_state.errorText = ending.failure;
            changed();
        });
    changed();
}

void AnalysisController::cancel() {
    m_job.stop();
}

} // namespace Jobs
