// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/StereoBuffer.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// One picture track of a movie as a player sees it.
struct ProbedVideo {
    std::string tag;
    std::string pixelFormat;
    int profile = 0;
    int width = 0;
    int height = 0;
    int primaries = 0;
    int transfer = 0;
    int matrix = 0;
    int range = 0;
    /// In seconds.
    double start = 0;
    double duration = 0;
    double frameRate = 0;
    /// Presentation times of all packets as multiples of 1/30 second, ascending. Not a whole multiple:
    /// negative.
    std::vector<std::int64_t> times;
    int keyFrames = 0;
    /// Mean luma of every decoded frame, in order.
    std::vector<double> lumas;
};

struct ProbedSound {
    std::string codec;
    int profile = 0;
    int sampleRate = 0;
    int channels = 0;
    std::int64_t bitRate = 0;
    double start = 0;
    double duration = 0;
    /// All decoded samples; the first is at time 0 of the movie.
    std::vector<Export::StereoSample> samples;
    /// The largest distance in bytes between a sound packet and the picture packet of its time.
    std::int64_t farthestFromPictures = 0;
};

struct ProbedMovie {
    std::vector<std::string> boxes;
    std::string brand;
    /// In seconds.
    double duration = 0;
    std::vector<ProbedVideo> video;
    std::vector<ProbedSound> sound;
    /// The four characters and the payload of the movie's colour box, empty when there is none.
    std::string colourBox;
};

/// Reads a whole movie with FFmpeg's libraries and its boxes by hand. Throws std::runtime_error.
ProbedMovie probeMovie(const std::filesystem::path& file);

/// The number of samples in a row whose root mean square is taken: the level around a time.
double level(const std::vector<Export::StereoSample>& samples, double time, double halfWidth,
             bool right = false);
