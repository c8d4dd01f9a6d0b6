// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Contenders.h"

#include "Child.h"

#include <Export/MovieWriter.h>
#include <Export/PendingFile.h>
#include <Export/VideoExporter.h>
#include <Roamly/Platform/AppImageProvider.h>
#include <Roamly/Slides/SlideshowFrameSource.h>
#include <Timeline/Playhead.h>
#include <Timeline/TimelineBuilder.h>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <vector>

namespace Bench {

namespace {

using Export::ExportPreset;
using Drawn = std::vector<std::shared_ptr<const Frames::YuvFrame>>;

constexpr int fps = 30;

class Stopwatch {
public:
    Stopwatch() { resetPeakMemory(); }

    [[nodiscard]] Measurement read(std::int64_t frames) const {
        const auto wall = std::chrono::steady_clock::now() - m_begin;
        return {frames, std::chrono::duration<double>(wall).count(), cpuSecondsSoFar() - m_cpu, peakMemory()};
    }

private:
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    double m_cpu = cpuSecondsSoFar();
};

/// The slideshow of a trip, ready to be drawn.
struct Show {
    explicit Show(const TripOptions& trip, const ExportPreset& preset)
        : project(sampleTrip(trip))
        , timeline(Timeline::TimelineBuilder::build(project, sampleSettings(trip)))
        , playhead(timeline, sampleSettings(trip).crossfade)
        , images(preset.dimensions().width)
        , frames(project, [this](const ProjectModel::PhotoRef& ref) { return images.image(ref); }) {}

    [[nodiscard]] std::int64_t count() const {
        return std::max<std::int64_t>(std::llround(timeline.totalDuration * fps), 1);
    }
    [[nodiscard]] std::shared_ptr<const Frames::YuvFrame> frame(std::int64_t index, Frames::FrameSize size) {
        return frames.frame(playhead.state(static_cast<double>(index) / fps), size);
    }

    ProjectModel::Project project;
    Timeline::SlideshowTimeline timeline;
    Timeline::Playhead playhead;
    Platform::AppImageProvider images;
    Slides::SlideshowFrameSource frames;
};

Drawn drawFrames(const TripOptions& trip, const ExportPreset& preset, std::int64_t most) {
    Show show(trip, preset);
    Drawn frames;
    for (std::int64_t i = 0; i < std::min(show.count(), most); ++i)
        frames.push_back(show.frame(i, preset.dimensions()));
    return frames;
}

} // namespace

Measurement runExport(const TripOptions& trip, const ExportPreset& preset,
                      const std::filesystem::path& movie) {
    const Stopwatch stopwatch;
    Show show(trip, preset);
    Export::VideoExporter exporter(show.timeline, preset, sampleSettings(trip).crossfade, show.frames, fps);
    exporter.exportMovie(movie);
    return stopwatch.read(show.count());
}

Measurement runDrawing(const TripOptions& trip, const ExportPreset& preset) {
    const Stopwatch stopwatch;
    Show show(trip, preset);
    for (std::int64_t i = 0; i < show.count(); ++i)
        static_cast<void>(show.frame(i, preset.dimensions()));
    return stopwatch.read(show.count());
}

Measurement runEncoder(const TripOptions& trip, const ExportPreset& preset,
                       const std::filesystem::path& movie, std::int64_t cycled) {
    const std::int64_t count = Show(trip, preset).count();
    const Drawn frames = drawFrames(trip, preset, cycled > 0 ? cycled : count);
    malloc_trim(0);
    const Frames::FrameSize size = preset.dimensions();
    const std::int64_t framesBytes =
        static_cast<std::int64_t>(frames.size()) * size.width * size.height * 3 / 2;

    const Stopwatch stopwatch;
    Export::PendingFile file(movie);
    Export::MovieWriter writer(file, {size, preset.codec, fps}, false);
    for (std::int64_t i = 0; i < count; ++i)
        writer.addFrame(frames[static_cast<std::size_t>(i) % frames.size()]);
    writer.finish([] {});
    file.commit();
    Measurement measurement = stopwatch.read(count);
    measurement.peakBytes -= framesBytes;
    return measurement;
}

} // namespace Bench
