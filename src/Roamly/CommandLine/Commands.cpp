// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>

#include <vector>

namespace CommandLine {

std::span<const Command> commands() {
    static const std::vector<Command> all{
        makeCommand(),
        newCommand(),
        importCommand(),
        sourcesCommand(),
        removeSourceCommand(),
        selectCommand(),
        deselectCommand(),
        placeCommand(),
        titleCommand(),
        moveCommand(),
        removeCommand(),
        musicCommand(),
        analyzeCommand(),
        captionCommand(),
        setCommand(),
        settingsCommand(),
        settingsKeyCommand(),
        settingsTestCommand(),
        exportCommand(),
        playCommand(),
        inspectProjectCommand(),
        inspectTimelineCommand(),
        inspectStateCommand(),
        inspectFrameCommand(),
        inspectMetadataCommand(),
        inspectFeaturesCommand(),
        inspectDistancesCommand(),
        inspectQualityCommand(),
        inspectTagsCommand(),
        inspectPlaceCommand(),
        inspectClustersCommand(),
    };
    return all;
}

} // namespace CommandLine
