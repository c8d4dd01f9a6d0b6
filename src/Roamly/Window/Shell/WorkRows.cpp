// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/WorkRows.h>

namespace Shell {

namespace {

template <typename Progress>
std::optional<double> fractionOf(const std::optional<Progress>& progress) {
    if (!progress || progress->total == 0)
        return std::nullopt;
    return static_cast<double>(progress->completed) / static_cast<double>(progress->total);
}

} // namespace

std::optional<WorkRow> workRow(const Jobs::ImportCoordinator::State& state) {
    if (!state.isRunning)
        return std::nullopt;
    WorkRow row{WorkKind::importing, state.progressText.value_or("Importing"), fractionOf(state.progress),
                state.isStopping};
    if (row.fraction)
        row.text +=
            "… " + std::to_string(state.progress->completed) + "/" + std::to_string(state.progress->total);
    return row;
}

std::optional<WorkRow> workRow(const Jobs::AnalysisController::State& state) {
    if (!state.isRunning)
        return std::nullopt;
    return WorkRow{WorkKind::analysis, state.progressText.value_or(""), fractionOf(state.progress), false};
}

std::optional<WorkRow> workRow(const Jobs::CaptionController::State& state) {
    if (!state.isRunning)
        return std::nullopt;
    return WorkRow{WorkKind::captions, state.progressText.value_or(""), fractionOf(state.progress),
                   state.isStopping};
}

std::optional<WorkRow> workRow(const Jobs::ExportController::State& state) {
    if (!state.isExporting)
        return std::nullopt;
    std::optional<double> fraction;
    if (state.progress > 0)
        fraction = state.progress;
    return WorkRow{WorkKind::exportMovie, state.stageText, fraction, state.isStopping};
}

} // namespace Shell
