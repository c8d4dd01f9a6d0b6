// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/MovieExport.h>
#include <Export/PendingFile.h>
#include <Export/VideoExporter.h>

#include <utility>

namespace Export {

void discardUnfinishedMovies() {
    PendingFile::discardAll();
}

VideoExporter::VideoExporter(Timeline::SlideshowTimeline timeline, ExportPreset preset, double crossfade,
                             Frames::FrameSource& frameSource, int fps)
    : m_timeline(std::move(timeline))
    , m_preset(preset)
    , m_playhead(m_timeline, crossfade)
    , m_frameSource(frameSource)
    , m_fps(fps) {}

ExportResult VideoExporter::exportMovie(const std::filesystem::path& path,
                                        const std::function<void(const ExportProgress&)>& progress,
                                        const std::stop_token& stop) {
    const MovieFormat format{m_preset.dimensions(), m_preset.codec, m_fps};
    return Export::exportMovie(m_timeline, m_playhead, format, m_frameSource, path, progress, stop);
}

} // namespace Export
