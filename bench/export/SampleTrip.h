#pragma once

#include <ProjectModel/Project.h>
#include <Timeline/EffectiveSettings.h>

#include <filesystem>
#include <vector>

namespace Bench {

/// The trip that every contender turns into a movie.
struct TripOptions {
    std::filesystem::path folder;
    int photos = 3;
    /// In seconds.
    double photoDuration = 3;
};

/// Painted 12-megapixel JPEGs with detail and noise like a camera's, made once; a trip of more photos shows
/// the same files again.
std::vector<std::filesystem::path> samplePhotos(const std::filesystem::path& folder);

/// Photos with captions and places, overlay chapters, no music.
ProjectModel::Project sampleTrip(const TripOptions& options);
Timeline::EffectiveSettings sampleSettings(const TripOptions& options);

} // namespace Bench
