// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Command.h>
#include <Roamly/Jobs/ImportCoordinator.h>

#include <span>
#include <string>

namespace CommandLine {

/// Imports folders with progress and tells the notices. Throws Foundation::Cancelled.
[[nodiscard]] Jobs::ImportOutcome importFolders(Document::ProjectDocument& document,
                                                std::span<const std::string> folders,
                                                const Invocation& invocation);

/// "Added 12 photos; the project holds 40."
[[nodiscard]] std::string addedSentence(const Jobs::ImportOutcome& outcome,
                                        const ProjectModel::Project& project);

} // namespace CommandLine
