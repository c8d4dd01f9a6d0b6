// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportPreset.h>
#include <Foundation/Uuid.h>
#include <Frames/FrameSource.h>
#include <ProjectModel/Project.h>
#include <Roamly/Jobs/Job.h>
#include <Timeline/EffectiveSettings.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace Jobs {

/// Runs one export at a time and keeps what there is to show of it. Owner's thread.
class ExportController {
public:
    /// Makes what draws the frames, decoding photos to at most `maxPixel` pixels on their longest side.
    /// Worker's thread.
    using FrameSourceFactory = std::function<std::unique_ptr<Frames::FrameSource>(
        const ProjectModel::Project& project, int maxPixel)>;

    /// The stage before the exporter's own.
    static constexpr std::string_view preparing = "Preparing…";

    struct State {
        bool isExporting = false;
        /// It was asked to end and has not yet.
        bool isStopping = false;
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

    /// `changed` is called after each change of the state.
    ExportController(Executor executor, FrameSourceFactory makeFrameSource,
                     std::function<void()> changed = {});

    [[nodiscard]] const State& state() const { return m_state; }

    /// Starts an export of a copy of the project and returns at once; ignored while one runs.
    void exportMovie(const ProjectModel::Project& project, const Timeline::EffectiveSettings& settings,
                     Export::ExportPreset preset, const std::filesystem::path& path);

    /// Asks the running export to end; no movie is left then.
    void cancel();

    /// The longest side in pixels to which photos are decoded for frames of a width.
    [[nodiscard]] static int decodingBound(int frameWidth) { return frameWidth <= 1920 ? 1920 : 3840; }

    /// What to tell about photos that are black in the movie; nothing when there are none.
    [[nodiscard]] static std::optional<std::string> failedPhotosSentence(std::size_t count);

private:
    void changed() const;

    State m_state;
    std::function<void()> m_changed;
    FrameSourceFactory m_makeFrameSource;
    Job m_job;
};

} // namespace Jobs
