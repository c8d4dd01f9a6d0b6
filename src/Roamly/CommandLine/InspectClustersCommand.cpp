// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/Document/ProjectStore.h>

#include <unordered_map>
#include <utility>
#include <vector>

namespace CommandLine {

namespace {

using Foundation::Uuid;

/// The groups in the order of their first photos.
std::vector<std::pair<Uuid, std::vector<Uuid>>> clusters(const ProjectModel::Project& project) {
    std::vector<std::pair<Uuid, std::vector<Uuid>>> result;
    std::unordered_map<Uuid, std::size_t> positions;
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        if (!photo.clusterID)
            continue;
        const auto [position, isNew] = positions.try_emplace(*photo.clusterID, result.size());
        if (isNew)
            result.push_back({*photo.clusterID, {}});
        result[position->second].second.push_back(photo.id);
    }
    return result;
}

int run(const Invocation& invocation) {
    const ProjectModel::Project project =
        Document::ProjectStore::load(invocation.arguments.positionals()[0]).project;
    invocation.console.result([&](Foundation::JsonWriter& json) {
        json.beginObject().key("clusters").beginArray();
        for (const auto& [cluster, photos] : clusters(project)) {
            json.beginObject().member("clusterID", cluster.text());
            json.key("photoIDs").beginArray();
            for (const Uuid& photo : photos)
                json.value(photo.text());
            json.endArray().endObject();
        }
        json.endArray().endObject();
    });
    return ExitStatus::done;
}

} // namespace

Command inspectClustersCommand() {
    return {
        .name = "inspect clusters",
        .summary = "a project’s groups of duplicates",
        .usages = {"PROJECT"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {},
        .details = "Prints the groups of near-duplicates as the project holds them, photos in its order.",
        .examples = {"roamly inspect clusters Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
