// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>

namespace Export {

/// Frames a second of all sound in a movie.
inline constexpr int audioSampleRate = 44100;

/// The two samples of one instant, full scale at ±1.
struct StereoSample {
    float left = 0;
    float right = 0;

    friend bool operator==(const StereoSample&, const StereoSample&) = default;
};

/// What one AAC packet holds.
using StereoBuffer = std::array<StereoSample, 1024>;

} // namespace Export
