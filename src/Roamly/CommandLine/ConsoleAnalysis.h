// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Command.h>
#include <Roamly/Document/AppSettings.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/AnalysisController.h>

namespace CommandLine {

/// Analyses the project with progress and tells the issues. Throws Foundation::Cancelled, with the project as
/// it was, and Failure.
[[nodiscard]] Jobs::AnalysisController::State analyze(Document::ProjectDocument& document,
                                                      const Document::AppSettings& settings,
                                                      const Invocation& invocation);

} // namespace CommandLine
