// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "SampleTrip.h"

#include <Export/ExportPreset.h>

#include <filesystem>
#include <string>
#include <vector>

namespace Bench {

/// Command lines of other programs that make the like: the photos fitted, slowly zoomed and dissolved into
/// each other, the same number of frames, the same encoder at the same settings. Without texts, which spares
/// them work.
std::vector<std::string> ffmpegCommand(const TripOptions& trip, const Export::ExportPreset& preset,
                                       const std::filesystem::path& movie);
std::vector<std::string> meltCommand(const TripOptions& trip, const Export::ExportPreset& preset,
                                     const std::filesystem::path& movie);

} // namespace Bench
