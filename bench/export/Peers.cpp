// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Peers.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace Bench {

namespace {

constexpr int fps = 30;

struct Schedule {
    long photoFrames;
    long dissolveFrames;
};

Schedule scheduleOf(const TripOptions& trip) {
    const double dissolve = std::min(trip.photoDuration / 2, sampleSettings(trip).crossfade);
    return {std::lround(trip.photoDuration * fps), std::lround(dissolve * fps)};
}

std::string encoderName(Export::ExportCodec codec) {
    return codec == Export::ExportCodec::h264 ? "libx264" : "libx265";
}

} // namespace

std::vector<std::string> ffmpegCommand(const TripOptions& trip, const Export::ExportPreset& preset,
                                       const std::filesystem::path& movie) {
    const auto files = samplePhotos(trip);
    const auto [width, height] = preset.dimensions();
    const auto [photoFrames, dissolveFrames] = scheduleOf(trip);
    std::vector<std::string> command{"ffmpeg", "-y", "-nostdin", "-loglevel", "error"};
    std::ostringstream graph;
    for (int i = 0; i < trip.photos; ++i) {
        command.insert(command.end(), {"-i", files[static_cast<std::size_t>(i) % files.size()].string()});
        graph << "[" << i << ":v]scale=" << width << ":" << height
              << ":force_original_aspect_ratio=decrease:flags=bicubic,pad=" << width << ":" << height
              << ":-1:-1,zoompan=z='1+0.1*on/" << photoFrames
              << "':x='(iw-iw/zoom)/2':y='(ih-ih/zoom)/2':d=" << photoFrames << ":s=" << width << "x"
              << height << ":fps=" << fps << ",settb=1/" << fps << "[v" << i << "];";
    }
    std::string last = "v0";
    for (int i = 1; i < trip.photos; ++i) {
        const std::string next = std::string("x").append(std::to_string(i));
        const double offset = static_cast<double>(i * (photoFrames - dissolveFrames)) / fps;
        graph << "[" << last << "][v" << i
              << "]xfade=transition=fade:duration=" << static_cast<double>(dissolveFrames) / fps
              << ":offset=" << offset << "[" << next << "];";
        last = next;
    }
    graph << "[" << last << "]format=yuv420p[out]";
    command.insert(command.end(), {"-filter_complex", graph.str(), "-map", "[out]", "-c:v",
                                   encoderName(preset.codec), "-movflags", "+faststart", movie.string()});
    return command;
}

std::vector<std::string> meltCommand(const TripOptions& trip, const Export::ExportPreset& preset,
                                     const std::filesystem::path& movie) {
    const auto files = samplePhotos(trip);
    const auto [width, height] = preset.dimensions();
    const auto [photoFrames, dissolveFrames] = scheduleOf(trip);
    std::ostringstream rectangles;
    rectangles << "transition.rect=0=0 0 " << width << " " << height << ";" << photoFrames - 1 << "="
               << -width / 20 << " " << -height / 20 << " " << width * 11 / 10 << " " << height * 11 / 10;
    const bool isSmall = preset.resolution == Export::ExportResolution::p1080;
    // It draws through Qt, which needs the name of a display but not the display.
    std::vector<std::string> command{"env",
                                     "DISPLAY=:0",
                                     "QT_QPA_PLATFORM=offscreen",
                                     "melt",
                                     "-silent",
                                     "-profile",
                                     isSmall ? "atsc_1080p_30" : "uhd_2160p_30"};
    for (int i = 0; i < trip.photos; ++i) {
        command.insert(command.end(),
                       {files[static_cast<std::size_t>(i) % files.size()].string(), "in=0",
                        "out=" + std::to_string(photoFrames - 1), "-attach", "affine", rectangles.str()});
        if (i > 0)
            command.insert(command.end(), {"-mix", std::to_string(dissolveFrames), "-mixer", "luma"});
    }
    command.insert(command.end(),
                   {"-consumer", "avformat:" + movie.string(), "vcodec=" + encoderName(preset.codec), "an=1",
                    "preset=medium", preset.codec == Export::ExportCodec::h264 ? "crf=23" : "crf=28",
                    "real_time=-2", "terminate_on_pause=1"});
    return command;
}

} // namespace Bench
