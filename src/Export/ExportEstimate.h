// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportPreset.h>

namespace Export {

/// What an export is going to cost.
struct ExportEstimate {
    double bytes = 0;
    /// Of waiting.
    double seconds = 0;

    friend bool operator==(const ExportEstimate&, const ExportEstimate&) = default;
};

/// A guess before the work: it rests on exports of a short film of real photos with this exporter (the
/// figures and how they were found stand in the implementation), as bytes and processor seconds for a second
/// of film, and takes the time to be shared evenly by the processors. Detail in the photos and the machine
/// move it by a factor of two either way. `filmSeconds` below zero counts as zero, `processorCount` below one
/// as one.
[[nodiscard]] ExportEstimate estimateExport(double filmSeconds, ExportPreset preset, int processorCount);

} // namespace Export
