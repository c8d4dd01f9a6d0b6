// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportError.h>
#include <Export/ExportPreset.h>
#include <Foundation/Uuid.h>
#include <Frames/FrameSource.h>
#include <Timeline/Playhead.h>
#include <Timeline/SlideshowTimeline.h>

#include <filesystem>
#include <functional>
#include <set>
#include <stop_token>
#include <string>

namespace Export {

struct ExportProgress {
    /// 0…1.
    double fraction = 0;
    /// "Rendering video", then "Done".
    std::string stage;

    friend bool operator==(const ExportProgress&, const ExportProgress&) = default;
};

struct ExportResult {
    std::set<Foundation::Uuid> failedPhotoIDs;

    friend bool operator==(const ExportResult&, const ExportResult&) = default;
};

/// Deletes what running exports have written so far, for a process that is about to end without waiting for
/// them. Thread-safe.
void discardUnfinishedMovies();

/// Writes one timeline to one QuickTime movie. Frames are rendered ahead by workers while the encoder runs;
/// the music is decoded, looped, faded and encoded beside them.
class VideoExporter {
public:
    /// `crossfade` in seconds, as the settings have it; `fps` frames a second. The frame source is borrowed
    /// and must outlive the export.
    VideoExporter(Timeline::SlideshowTimeline timeline, ExportPreset preset, double crossfade,
                  Frames::FrameSource& frameSource, int fps = 30);

    /// Throws ExportError; then nothing is left at `path` or beside it, and a movie that was there before is
    /// gone too unless nothing could be begun: no frames, music that cannot be played. `progress` is called
    /// in ascending order. Owner's thread; the frame source is asked in workers' threads.
    ExportResult exportMovie(const std::filesystem::path& path,
                             const std::function<void(const ExportProgress&)>& progress = {},
                             const std::stop_token& stop = {});

private:
    Timeline::SlideshowTimeline m_timeline;
    ExportPreset m_preset;
    Timeline::Playhead m_playhead;
    Frames::FrameSource& m_frameSource;
    int m_fps;
};

} // namespace Export
