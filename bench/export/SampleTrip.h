// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>
#include <Timeline/EffectiveSettings.h>

#include <filesystem>
#include <vector>

namespace Bench {

/// The trip that every contender turns into a movie.
struct TripOptions {
    /// Where painted photos and movies go.
    std::filesystem::path folder;
    /// A folder of photos to use instead of painted ones; empty: none.
    std::filesystem::path sources;
    int photos = 3;
    /// In seconds.
    double photoDuration = 3;
};

/// Painted 12-megapixel JPEGs with detail and noise like a camera's, made once; a trip of more photos shows
/// the same files again.
std::vector<std::filesystem::path> samplePhotos(const TripOptions& options);

/// Photos with captions and places, overlay chapters, no music.
ProjectModel::Project sampleTrip(const TripOptions& options);
Timeline::EffectiveSettings sampleSettings(const TripOptions& options);

} // namespace Bench
