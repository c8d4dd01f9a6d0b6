// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/Coordinate.h>
#include <ProjectModel/PhotoRef.h>
#include <ProjectModel/Provenance.h>
#include <ProjectModel/ResolvedLocation.h>

#include <optional>
#include <string>

namespace ProjectModel {

/// One photo of a project. Every creator states every member.
struct PhotoItem {
    /// Stable inside its project and never reused.
    Foundation::Uuid id;
    PhotoRef source;
    std::optional<Foundation::Instant> captureDate;
    /// From the photo's own GPS data.
    std::optional<Coordinate> coordinate;
    std::optional<ResolvedLocation> location;
    /// The near-duplicate group it belongs to.
    std::optional<Foundation::Uuid> clusterID;
    /// 0…1, from analysis; finite.
    std::optional<double> qualityScore;
    std::optional<std::string> caption;
    /// Absent when there is no caption, though files may hold either without the other.
    std::optional<Provenance> captionProvenance;
    /// Whether the photo goes into the slideshow.
    bool isSelected;
    Provenance selectionProvenance;
    /// Its pixels could not be found the last time its source was read.
    bool isMissing;
    /// The `PhotoSource` it was imported from; absent for photos older than source tracking.
    std::optional<Foundation::Uuid> sourceID;

    friend bool operator==(const PhotoItem&, const PhotoItem&) = default;
};

} // namespace ProjectModel
