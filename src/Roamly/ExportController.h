#pragma once

#include <Export/ExportPreset.h>
#include <Export/FrameSource.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>
#include <Timeline/EffectiveSettings.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>

namespace Roamly {

/// Runs one export at a time and keeps what there is to show of it. It belongs to one thread, which alone
/// reads its members; the work is done on another, whose reports are carried over by the executor.
class ExportController {
public:
    /// Runs a function on the controller's thread, in the order of the calls: a window posts to its event
    /// loop. The default runs it at once on the working thread, for owners that touch nothing until `wait`
    /// returns.
    using Executor = std::function<void(std::function<void()>)>;
    /// Makes what draws the frames, decoding photos to at most `maxPixel` pixels on their longest side.
    using FrameSourceFactory = std::function<std::unique_ptr<Export::FrameSource>(
        const ProjectModel::Project& project, int maxPixel)>;

    /// The stage before the exporter's own.
    static constexpr std::string_view preparing = "Preparing…";

    struct State {
        bool isExporting = false;
        /// 0…1.
        double progress = 0;
        std::string stageText;
        /// After a failed or cancelled export.
        std::optional<std::string> errorText;
        bool wasCancelled = false;
        /// The finished movie.
        std::optional<std::filesystem::path> savedPath;
        /// Photos that could not be drawn and are black in the movie.
        std::set<Foundation::Uuid> failedPhotoIDs;

        [[nodiscard]] std::size_t failedPhotoCount() const { return failedPhotoIDs.size(); }
    };

    /// `changed` is called by way of the executor after each change of the state.
    explicit ExportController(std::function<void()> changed = {}, Executor executor = {},
                              FrameSourceFactory makeFrameSource = slideshowFrameSource);
    /// Cancels a running export and waits for its end. The executor must still carry out what it was given.
    ~ExportController();
    ExportController(const ExportController&) = delete;
    ExportController& operator=(const ExportController&) = delete;

    [[nodiscard]] const State& state() const { return m_state; }

    /// Starts an export of a copy of the project and returns at once. Must not be called while one runs. The
    /// default factory needs a QGuiApplication.
    void exportProject(const ProjectModel::Project& project, const Timeline::EffectiveSettings& settings,
                       Export::ExportPreset preset, const std::filesystem::path& path);

    /// Asks the running export to end. May be called from any thread.
    void cancel();

    /// Waits until the working thread has ended; with an executor that posts, its last reports may still be
    /// due.
    void wait();

    /// Frames of the project as the slideshow shows them.
    [[nodiscard]] static std::unique_ptr<Export::FrameSource>
    slideshowFrameSource(const ProjectModel::Project& project, int maxPixel);

    /// The longest side in pixels to which photos are decoded for frames of a width.
    [[nodiscard]] static int decodingBound(int frameWidth) { return frameWidth <= 1920 ? 1920 : 3840; }

    /// What to tell about photos that are black in the movie; nothing when there are none.
    [[nodiscard]] static std::optional<std::string> failedPhotosSentence(std::size_t count);

private:
    void post(std::function<void(State&)> change);

    State m_state;
    std::function<void()> m_changed;
    Executor m_executor;
    FrameSourceFactory m_makeFrameSource;
    std::jthread m_worker;
};

} // namespace Roamly
