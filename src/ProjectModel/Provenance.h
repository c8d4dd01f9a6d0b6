// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string_view>

namespace ProjectModel {

/// Who produced a value. What the user set is never overwritten by an automatic step.
enum class Provenance {
    /// Analysis or the import's default (selection).
    proposed,
    /// Reverse geocoding of the photo's own coordinate.
    geocoded,
    /// Inference from neighbouring photos.
    inferred,
    /// A caption backend.
    generated,
    /// The user, by hand.
    user,
};

/// The text stored in files.
[[nodiscard]] std::string_view rawValue(Provenance provenance);
[[nodiscard]] std::optional<Provenance> provenanceFromRawValue(std::string_view text);

} // namespace ProjectModel
