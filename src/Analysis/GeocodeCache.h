// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Coordinate.h>
#include <ProjectModel/ResolvedLocation.h>

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace Analysis {

/// True for a position on Earth: finite, latitude within ±90, longitude within ±180 degrees.
[[nodiscard]] bool isOnEarth(const ProjectModel::Coordinate& coordinate);

/// Remembers the place of every cell of 0.01 by 0.01 degrees that was ever asked for, in a JSON file: one
/// object whose members are grid keys and whose values are locations. Thread-safe.
class GeocodeCache {
public:
    /// Loads the file at once. A file that is missing, unreadable or anything but such an object gives an
    /// empty cache; nothing is reported.
    explicit GeocodeCache(std::filesystem::path file);

    [[nodiscard]] std::optional<ProjectModel::ResolvedLocation>
    lookup(const ProjectModel::Coordinate& coordinate) const;
    void store(const ProjectModel::ResolvedLocation& location, const ProjectModel::Coordinate& coordinate);

    /// Replaces the file, making missing folders. Failures are ignored: the worst they cost is asking again.
    void persist() const;

    /// "4886,235": latitude and longitude in hundredths of a degree, halves rounded away from zero. A
    /// coordinate that is not finite, or beyond what 64 bits hold, is a fault of the program and ends it;
    /// callers ask `isOnEarth` first.
    [[nodiscard]] static std::string gridKey(const ProjectModel::Coordinate& coordinate);

private:
    std::filesystem::path m_file;
    mutable std::mutex m_mutex;
    std::map<std::string, ProjectModel::ResolvedLocation> m_entries;
};

} // namespace Analysis
