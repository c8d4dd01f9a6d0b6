// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/MovieExport.h>
#include <Export/MusicFile.h>
#include <Export/PendingFile.h>
#include <Export/PhotoScout.h>
#include <Export/RenderQueue.h>
#include <Export/Soundtrack.h>
#include <Foundation/Bookmark.h>
#include <Foundation/Cancellation.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

namespace Export {

namespace {

namespace fs = std::filesystem;

/// Throws ExportError (noFrames, writerSetupFailed).
std::int64_t frameCount(double totalDuration, int fps) {
    if (!(totalDuration > 0))
        throw ExportError(ExportError::Kind::noFrames);
    const double count = std::round(totalDuration * fps);
    // Beyond this, times no longer fit a movie file.
    if (!(count <= std::numeric_limits<std::int32_t>::max()))
        throw ExportError(ExportError::Kind::writerSetupFailed, "the slideshow is too long for a movie");
    return std::max<std::int64_t>(std::llround(count), 1);
}

/// The music's file, if the timeline has music that can still be found.
std::optional<fs::path> musicFile(const Timeline::SlideshowTimeline& timeline) {
    if (!timeline.audio || !(timeline.audio->totalDuration > 0))
        return std::nullopt;
    return Foundation::BookmarkResolver().resolvedFile(timeline.audio->musicBookmark);
}

/// The file that a symbolic link leads to, so that the link stays and the movie is written where it points.
fs::path withoutLinks(fs::path path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int i = 0; i < mostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

/// What is no plain file is never replaced, and neither is the slideshow's own music.
void checkTarget(const fs::path& target, const std::optional<fs::path>& music) {
    const auto refuse = [&](const std::string& reason) {
        throw ExportError(ExportError::Kind::writerSetupFailed, target.string() + ": " + reason);
    };
    std::error_code error;
    if (fs::is_symlink(fs::symlink_status(target, error)))
        refuse("the symbolic links lead nowhere");
    const fs::file_status status = fs::status(target, error);
    if (fs::is_directory(status))
        refuse("this is a folder");
    if (fs::exists(status) && !fs::is_regular_file(status))
        refuse("this is not a regular file");
    if (music && fs::equivalent(target, *music, error))
        refuse("this is the slideshow's music");
}

/// The frame with which each photo begins, as far as it has one.
std::vector<std::int64_t> firstFrames(const Timeline::SlideshowTimeline& timeline, int fps,
                                      std::int64_t count) {
    std::vector<std::int64_t> frames;
    for (const Timeline::TimelineItem& item : timeline.items) {
        if (const auto* photo = std::get_if<Timeline::PhotoSegment>(&item)) {
            const double first = std::ceil(photo->start * fps);
            if (first >= 0 && first < static_cast<double>(count))
                frames.push_back(static_cast<std::int64_t>(first));
        }
    }
    return frames;
}

struct Rendering {
    int workers;
    int capacity;
};

/// Drawing takes a small part of the time that compressing takes, so few threads do it; what they do in
/// advance is bounded by memory rather than by number, since a 4K frame takes 12 MB.
Rendering renderingFor(Frames::FrameSize size) {
    constexpr std::int64_t budget = 48 << 20;
    const int workers = std::clamp(static_cast<int>(std::thread::hardware_concurrency()) / 4, 1, 4);
    const std::int64_t frameBytes = std::int64_t{size.width} * size.height * 3 / 2;
    const auto affordable = static_cast<int>(std::clamp<std::int64_t>(budget / frameBytes, 2, 16));
    return {workers, std::max(affordable, workers + 1)};
}

/// The frame source is somebody else's code: whatever it throws ends the export as an ExportError.
std::shared_ptr<const Frames::YuvFrame> draw(Frames::FrameSource& frameSource,
                                             const Timeline::RenderState& state, Frames::FrameSize size) {
    try {
        return frameSource.frame(state, size);
    } catch (const ExportError&) {
        throw;
    } catch (const Foundation::Cancelled&) {
        throw ExportError(ExportError::Kind::cancelled);
    } catch (const std::bad_alloc&) {
        throw ExportError(ExportError::Kind::pixelBufferPoolUnavailable);
    } catch (const std::exception& error) {
        throw ExportError(ExportError::Kind::appendFailed, error.what());
    }
}

void throwIfStopped(const std::stop_token& stop) {
    if (stop.stop_requested())
        throw ExportError(ExportError::Kind::cancelled);
}

} // namespace

ExportResult exportMovie(const Timeline::SlideshowTimeline& timeline, const Timeline::Playhead& playhead,
                         const MovieFormat& format, Frames::FrameSource& frameSource, const fs::path& path,
                         const std::function<void(const ExportProgress&)>& progress,
                         const std::stop_token& stop) {
    const std::int64_t count = frameCount(timeline.totalDuration, format.fps);
    const auto report = [&](double fraction, const char* stage) {
        if (progress)
            progress({fraction, stage});
    };

    const std::optional<fs::path> music = musicFile(timeline);
    const fs::path target = withoutLinks(path);
    checkTarget(target, music);
    if (music)
        checkMusic(*music, stop);
    std::error_code ignored;
    fs::remove(target, ignored);
    throwIfStopped(stop);

    PendingFile file(target);
    MovieWriter writer(file, format, music.has_value());
    std::optional<Soundtrack> soundtrack;
    if (music && writer.hasSound())
        soundtrack.emplace(*music, *timeline.audio, stop);
    // Keeps the sound level with the pictures, so that neither waits long for the other to be interleaved.
    const auto addSoundUntil = [&](double time) {
        StereoBuffer buffer;
        while (soundtrack && soundtrack->position() < time && soundtrack->next(buffer)) {
            throwIfStopped(stop);
            writer.addSound(buffer);
        }
    };

    const auto drawn = [&](std::int64_t index) {
        const double time = static_cast<double>(index) / format.fps;
        return draw(frameSource, playhead.state(time), format.size);
    };
    const auto rendering = renderingFor(format.size);
    {
        PhotoScout scout(firstFrames(timeline, format.fps, count), format.fps,
                         [&](std::int64_t index) { static_cast<void>(drawn(index)); });
        RenderQueue frames(count, rendering.workers, rendering.capacity, [&](std::int64_t index) {
            scout.reach(index);
            return drawn(index);
        });
        for (std::int64_t index = 0; index < count; ++index) {
            addSoundUntil(static_cast<double>(index + 1) / format.fps);
            writer.addFrame(frames.next(stop));
            report(static_cast<double>(index + 1) / static_cast<double>(count), "Rendering video");
        }
    }
    addSoundUntil(std::numeric_limits<double>::infinity());
    writer.finish([&] { throwIfStopped(stop); });
    file.commit();
    report(1, "Done");
    return {frameSource.failedPhotoIDs()};
}

} // namespace Export
