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
#include <Roamly/AppSettings.h>
#include <Roamly/ProjectDocument.h>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

namespace Roamly {

/// What captioning needs of the world around it. Asked when a run starts, from the controller's thread,
/// except for `image` and `classify`, which the working thread calls.
struct CaptionEnvironment {
    std::function<AppSettings()> settings;
    /// Empty when no key is stored.
    std::function<std::string()> openRouterKey;
    std::function<std::optional<Foundation::Image>(const ProjectModel::PhotoRef&)> image;
    /// May be absent: then photos have no scene tags.
    Captioning::ImageClassifier classify;
    std::shared_ptr<const Captioning::HTTPTransport> transport;
    std::string openRouterBaseURL;
};

/// The key in the Secret Service, empty when none is stored there. One that an older version left in the
/// settings is moved there first.
[[nodiscard]] std::string storedOpenRouterKey();

/// The world as it is: the user's settings, the Secret Service, the photos on disk and the network.
[[nodiscard]] CaptionEnvironment systemCaptionEnvironment();

/// Writes captions into the open project, one job at a time, and keeps what there is to show of it. It
/// belongs to one thread, which alone reads its state and owns the document; the work is done on another,
/// whose reports are carried over by the executor.
class CaptionController {
public:
    /// Runs a function on the controller's thread, in the order of the calls. The default runs it at once on
    /// the working thread, for owners that touch nothing until `wait` returns.
    using Executor = std::function<void(std::function<void()>)>;

    struct State {
        bool isRunning = false;
        std::optional<std::string> progressText;
        /// The last problem, in words for the user; cleared when a run starts.
        std::optional<std::string> errorText;
        /// How far a batch has come.
        std::optional<Captioning::CaptionProgress> progress;
        /// What the last job brought.
        std::optional<Captioning::CaptionRun> run;
    };

    explicit CaptionController(CaptionEnvironment environment, std::function<void()> changed = {},
                               Executor executor = {});
    /// Cancels a running job and waits for its end. The executor must still carry out what it was given.
    ~CaptionController();
    CaptionController(const CaptionController&) = delete;
    CaptionController& operator=(const CaptionController&) = delete;

    [[nodiscard]] const State& state() const { return m_state; }

    /// Captions the selected photos whose caption the user did not type. Returns at once; ignored while a job
    /// runs. The document must outlive the job.
    void run(ProjectDocument& document, ProjectModel::AIProvider provider);

    /// Captions one photo, selected or not, even over a caption the user typed. An unknown photo is ignored.
    void regenerate(const Foundation::Uuid& photoID, ProjectDocument& document,
                    ProjectModel::AIProvider provider);

    /// Asks the running job to end; what it has is kept. May be called from any thread.
    void cancel();
    /// Waits until the working thread has ended.
    void wait();

    [[nodiscard]] static std::unique_ptr<Captioning::CaptionGenerating>
    makeGenerator(ProjectModel::AIProvider provider, const std::optional<std::string>& guidance,
                  const AppSettings& settings, const CaptionEnvironment& environment);

    /// The server that the settings name, or the local one when that is no address.
    [[nodiscard]] static std::string ollamaURL(const AppSettings& settings);

    /// Names what photos show with the confidence and number of tags that captions use.
    [[nodiscard]] static Captioning::VisionSceneTagger sceneTagger(Captioning::ImageClassifier classify);

    /// The project's guidance, otherwise the user's.
    [[nodiscard]] static std::optional<std::string> guidance(const ProjectModel::Project& project,
                                                             const AppSettings& settings);

    /// The error in words for the user; `backend` is the provider's display name.
    [[nodiscard]] static std::string describe(const Captioning::CaptionError& error,
                                              const std::string& backend);

private:
    using Job = std::function<Captioning::CaptionRun(
        const Captioning::SceneTagging&, const Captioning::CaptionGenerating&, const std::stop_token&)>;
    using Finish = std::function<void(const Captioning::CaptionRun&)>;

    void start(const std::string& progressText, const ProjectModel::Project& project,
               ProjectModel::AIProvider provider, Job job, Finish finish);
    void post(std::function<void(State&)> change);

    CaptionEnvironment m_environment;
    State m_state;
    std::function<void()> m_changed;
    Executor m_executor;
    std::jthread m_worker;
};

} // namespace Roamly
