#pragma once

#include <Analysis/PipelineProgress.h>
#include <ProjectModel/Project.h>
#include <Roamly/AppSettings.h>
#include <Roamly/ProjectDocument.h>

#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace Roamly {

/// Runs one analysis at a time on the open project and keeps what there is to show of it. It belongs to one
/// thread, which alone reads its state and owns the document; the work is done on another, whose reports are
/// carried over by the executor.
class AnalysisController {
public:
    /// Runs a function on the controller's thread, in the order of the calls. The default runs it at once on
    /// the working thread, for owners that touch nothing until `wait` returns.
    using Executor = std::function<void(std::function<void()>)>;
    using Progress = std::function<void(const Analysis::PipelineProgress&)>;
    /// Analyses a copy of a project on the working thread, and saves what it learnt about places even when it
    /// was stopped. Throws std::exception with a sentence when it cannot begin.
    using Analyze = std::function<ProjectModel::Project(const ProjectModel::Project&, const AppSettings&,
                                                        const Progress&, const std::stop_token&)>;

    struct State {
        bool isRunning = false;
        std::optional<std::string> progressText;
        std::optional<Analysis::PipelineProgress> progress;
        /// What a run could not do, in sentences for the user.
        std::vector<std::string> issues;
        /// A new run might locate more photos.
        bool canRetry = false;
        bool wasCancelled = false;
        /// The run could not begin: a file of the program is missing or damaged.
        std::optional<std::string> errorText;
    };

    explicit AnalysisController(std::function<void()> changed = {}, Executor executor = {},
                                Analyze analyze = {});
    /// Cancels a running analysis and waits for its end. The executor must still carry out what it was given.
    ~AnalysisController();
    AnalysisController(const AnalysisController&) = delete;
    AnalysisController& operator=(const AnalysisController&) = delete;

    [[nodiscard]] const State& state() const { return m_state; }

    /// Starts an analysis of a copy of the project and returns at once; ignored while one runs. The document
    /// must outlive the run.
    void run(ProjectDocument& document, const AppSettings& settings);

    /// Drops the running analysis: nothing of it reaches the project.
    void cancel();
    /// Asks the running analysis to end as `cancel` does, from any thread; what there is to show changes only
    /// when it has ended.
    void requestStop();
    /// Waits until the working thread has ended.
    void wait();

    /// "Finding duplicates… 12/40".
    [[nodiscard]] static std::string describe(const Analysis::PipelineProgress& progress);

    /// Folds an analysed copy into the project as proposals; photos that came or went meanwhile are left
    /// alone.
    static void merge(const ProjectModel::Project& analysed, ProjectModel::Project& project);

    struct Issues {
        std::vector<std::string> texts;
        bool canRetry = false;
    };
    /// Which photos of the project have no place, and whether trying again may help.
    [[nodiscard]] static Issues issues(const ProjectModel::Project& project);

private:
    void post(std::function<void(State&)> change);

    State m_state;
    std::function<void()> m_changed;
    Executor m_executor;
    Analyze m_analyze;
    std::jthread m_worker;
};

/// An analysis with the networks, the gazetteer and the cache of this machine.
[[nodiscard]] ProjectModel::Project analyzeOnThisMachine(const ProjectModel::Project& project,
                                                         const AppSettings& settings,
                                                         const AnalysisController::Progress& progress,
                                                         const std::stop_token& stop);

} // namespace Roamly
