// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/PipelineProgress.h>
#include <ProjectModel/Project.h>
#include <Roamly/Document/AppSettings.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/Job.h>

#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace Jobs {

/// Runs one analysis at a time on the open project and keeps what there is to show of it. Owner's thread.
class AnalysisController {
public:
    using Progress = std::function<void(const Analysis::PipelineProgress&)>;
    /// Analyses a copy of a project, and saves what it learnt about places even when it was stopped. Worker's
    /// thread. Throws std::exception with a sentence when it cannot begin.
    using Analyze = std::function<ProjectModel::Project(
        const ProjectModel::Project&, const Document::AppSettings&, const Progress&, const std::stop_token&)>;

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

    /// `changed` is called after each change of the state.
    AnalysisController(Executor executor, Analyze analyze, std::function<void()> changed = {});

    [[nodiscard]] const State& state() const { return m_state; }

    /// Starts an analysis of a copy of the project and returns at once; ignored while one runs. The document
    /// must outlive the run.
    void run(Document::ProjectDocument& document, const Document::AppSettings& settings);

    /// Drops the running analysis: it is idle at once, and nothing of it reaches the project. What it learnt
    /// about places is still saved, at the latest when the controller is gone.
    void cancel();

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
    void changed() const;

    State m_state;
    std::function<void()> m_changed;
    Analyze m_analyze;
    Job m_job;
};

} // namespace Jobs
