// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/CaptionError.h>
#include <Captioning/CaptionGenerating.h>
#include <Captioning/CaptionPipeline.h>
#include <Captioning/HTTPTransport.h>
#include <Captioning/SceneTagging.h>
#include <Foundation/Image.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/AIProvider.h>
#include <ProjectModel/PhotoRef.h>
#include <ProjectModel/Project.h>
#include <Roamly/Document/AppSettings.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/Job.h>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace Jobs {

/// What captioning needs of the world around it. Everything is asked on the worker's thread, the settings and
/// the key when a run starts: a keyring may take its time.
struct CaptionEnvironment {
    std::function<Document::AppSettings()> settings;
    /// Empty when no key is stored.
    std::function<std::string()> openRouterKey;
    std::function<std::optional<Foundation::Image>(const ProjectModel::PhotoRef&)> image;
    /// May be absent: then photos have no scene tags.
    Captioning::ImageClassifier classify;
    std::shared_ptr<const Captioning::HTTPTransport> transport;
    std::string openRouterBaseURL;
};

/// Writes captions into the open project, one job at a time, and keeps what there is to show of it. Owner's
/// thread.
class CaptionController {
public:
    struct State {
        bool isRunning = false;
        /// It was asked to end and has not yet.
        bool isStopping = false;
        std::optional<std::string> progressText;
        /// The last problem, in words for the user; cleared when a run starts.
        std::optional<std::string> errorText;
        /// How far a batch has come.
        std::optional<Captioning::CaptionProgress> progress;
        /// What the last job brought.
        std::optional<Captioning::CaptionRun> run;
    };

    /// `changed` is called after each change of the state.
    CaptionController(Executor executor, CaptionEnvironment environment, std::function<void()> changed = {});

    [[nodiscard]] const State& state() const { return m_state; }

    /// Captions the selected photos whose caption the user did not type. Returns at once; ignored while a job
    /// runs. The document must outlive the job.
    void run(Document::ProjectDocument& document, ProjectModel::AIProvider provider);

    /// Captions one photo, selected or not, even over a caption the user typed. An unknown photo is ignored.
    void regenerate(const Foundation::Uuid& photoID, Document::ProjectDocument& document,
                    ProjectModel::AIProvider provider);

    /// Asks the running job to end; what it has is kept.
    void cancel();

    [[nodiscard]] static std::unique_ptr<Captioning::CaptionGenerating>
    makeGenerator(ProjectModel::AIProvider provider, const std::optional<std::string>& guidance,
                  const Document::AppSettings& settings, const CaptionEnvironment& environment);

    /// The server that the settings name, or the local one when that is no address.
    [[nodiscard]] static std::string ollamaURL(const Document::AppSettings& settings);

    /// Names what photos show with the confidence and number of tags that captions use.
    [[nodiscard]] static Captioning::VisionSceneTagger sceneTagger(Captioning::ImageClassifier classify);

    /// The project's guidance, otherwise the user's.
    [[nodiscard]] static std::optional<std::string> guidance(const ProjectModel::ProjectSettings& project,
                                                             const Document::AppSettings& settings);

    /// The error in words for the user; `backend` is the provider's display name.
    [[nodiscard]] static std::string describe(const Captioning::CaptionError& error,
                                              const std::string& backend);

private:
    /// What a job does with photos, on the worker's thread.
    using Captioned = std::function<Captioning::CaptionRun(
        const Captioning::SceneTagging&, const Captioning::CaptionGenerating&, const Job::Run&)>;
    /// What it does with its captions, on the owner's.
    using Finish = std::function<void(const Captioning::CaptionRun&)>;

    void start(const std::string& progressText, const ProjectModel::Project& project,
               ProjectModel::AIProvider provider, Captioned captioned, Finish finish);
    void changed() const;

    /// Shared with the worker.
    std::shared_ptr<const CaptionEnvironment> m_environment;
    State m_state;
    std::function<void()> m_changed;
    Job m_job;
};

} // namespace Jobs
