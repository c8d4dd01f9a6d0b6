#pragma once

#include <Roamly/AnalysisController.h>
#include <Roamly/AppSettings.h>
#include <Roamly/CommandLine/Command.h>
#include <Roamly/ProjectDocument.h>

namespace CommandLine {

/// Analyses the project with progress and tells the issues. Throws Foundation::Cancelled, with the project as
/// it was, and Failure.
[[nodiscard]] Roamly::AnalysisController::State
analyze(Roamly::ProjectDocument& document, const Roamly::AppSettings& settings, const Invocation& invocation);

} // namespace CommandLine
