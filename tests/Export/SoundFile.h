// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <functional>
#include <string>

/// A piece of sound to write to a file.
struct SoundFile {
    /// FFmpeg's names of the container and the codec.
    std::string container = "wav";
    std::string codec = "pcm_s16le";
    int sampleRate = 44100;
    int channels = 2;
    /// Leaves the channels unnamed, as measuring programs do.
    bool hasNamedChannels = true;
    /// Samples a channel.
    int length = 44100;
    /// The sample of a channel, by its index: -1…1.
    std::function<double(int index, int channel)> sample = [](int, int) { return 0.0; };
    /// Adds a picture of the cover, which the containers present as a picture track.
    bool hasCover = false;
};

/// Throws std::runtime_error.
void writeSound(const std::filesystem::path& file, const SoundFile& sound);

/// A sine of 1 at its peak.
double sine(double frequency, int index, int sampleRate);
