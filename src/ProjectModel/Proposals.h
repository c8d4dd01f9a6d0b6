// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/ResolvedLocation.h>

#include <optional>

namespace ProjectModel {

/// What an automatic step found out about one photo; it gives way to what the user chose.
struct ProposedLocation {
    Foundation::Uuid id;
    ResolvedLocation location;
};

struct ProposedSelection {
    Foundation::Uuid id;
    bool isSelected;
    /// Absent values clear the photo's.
    std::optional<Foundation::Uuid> clusterID;
    std::optional<double> qualityScore;
};

} // namespace ProjectModel
