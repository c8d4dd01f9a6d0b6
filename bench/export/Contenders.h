// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "SampleTrip.h"

#include <Export/ExportPreset.h>

#include <cstdint>
#include <filesystem>

namespace Bench {

/// What one of our own contenders took for its work alone, without start-up.
struct Measurement {
    std::int64_t frames = 0;
    double wallSeconds = 0;
    double cpuSeconds = 0;
    std::int64_t peakBytes = 0;
};

/// Everything from the project's records to the finished movie.
Measurement runExport(const TripOptions& trip, const Export::ExportPreset& preset,
                      const std::filesystem::path& movie);

/// Draws all frames on one thread and forgets them.
Measurement runDrawing(const TripOptions& trip, const Export::ExportPreset& preset);

/// Draws the frames into memory and then measures the encoder and the muxer fed from there. `cycled` frames
/// are kept and shown again and again; 0 keeps all. The frames' own memory is not counted.
Measurement runEncoder(const TripOptions& trip, const Export::ExportPreset& preset,
                       const std::filesystem::path& movie, std::int64_t cycled);

} // namespace Bench
