// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/AnalysisController.h>
#include <Roamly/Jobs/CaptionController.h>
#include <Roamly/Jobs/ExportController.h>
#include <Roamly/Jobs/ImportCoordinator.h>

#include <optional>
#include <string>
#include <vector>

namespace Shell {

enum class WorkKind { importing, analysis, captions, exportMovie };

/// One piece of running work, as the strip shows it. A plain value.
struct WorkRow {
    WorkKind kind = WorkKind::importing;
    /// "Finding duplicates… 12/40".
    std::string text;
    /// 0…1; absent while it is not known how much there is to do.
    std::optional<double> fraction;
    /// It was asked to end and has not yet.
    bool isStopping = false;

    friend bool operator==(const WorkRow&, const WorkRow&) = default;
};

// What the strip shows of each kind of work; nothing while it does not run.
[[nodiscard]] std::optional<WorkRow> workRow(const Jobs::ImportCoordinator::State& state);
[[nodiscard]] std::optional<WorkRow> workRow(const Jobs::AnalysisController::State& state);
[[nodiscard]] std::optional<WorkRow> workRow(const Jobs::CaptionController::State& state);
[[nodiscard]] std::optional<WorkRow> workRow(const Jobs::ExportController::State& state);

} // namespace Shell
