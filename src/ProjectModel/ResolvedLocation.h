// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Provenance.h>

#include <optional>
#include <string>

namespace ProjectModel {

/// A place name attached to a photo.
struct ResolvedLocation {
    std::optional<std::string> city;
    std::optional<std::string> country;
    Provenance provenance = Provenance::proposed;

    friend bool operator==(const ResolvedLocation&, const ResolvedLocation&) = default;
};

} // namespace ProjectModel
