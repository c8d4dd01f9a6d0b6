// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Command.h>

#include <span>

namespace CommandLine {

/// Every command, in the order in which the help lists them.
[[nodiscard]] std::span<const Command> commands();

// One file each.
[[nodiscard]] Command makeCommand();
[[nodiscard]] Command newCommand();
[[nodiscard]] Command importCommand();
[[nodiscard]] Command sourcesCommand();
[[nodiscard]] Command removeSourceCommand();
[[nodiscard]] Command selectCommand();
[[nodiscard]] Command deselectCommand();
[[nodiscard]] Command placeCommand();
[[nodiscard]] Command titleCommand();
[[nodiscard]] Command moveCommand();
[[nodiscard]] Command removeCommand();
[[nodiscard]] Command musicCommand();
[[nodiscard]] Command setCommand();
[[nodiscard]] Command settingsCommand();
[[nodiscard]] Command settingsKeyCommand();
[[nodiscard]] Command settingsTestCommand();
[[nodiscard]] Command analyzeCommand();
[[nodiscard]] Command captionCommand();
[[nodiscard]] Command exportCommand();
[[nodiscard]] Command playCommand();
[[nodiscard]] Command inspectProjectCommand();
[[nodiscard]] Command inspectTimelineCommand();
[[nodiscard]] Command inspectStateCommand();
[[nodiscard]] Command inspectFrameCommand();
[[nodiscard]] Command inspectMetadataCommand();
[[nodiscard]] Command inspectFeaturesCommand();
[[nodiscard]] Command inspectDistancesCommand();
[[nodiscard]] Command inspectQualityCommand();
[[nodiscard]] Command inspectTagsCommand();
[[nodiscard]] Command inspectPlaceCommand();
[[nodiscard]] Command inspectClustersCommand();

} // namespace CommandLine
