#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Counted.h>
#include <Roamly/CommandLine/Importing.h>
#include <Roamly/CommandLine/JsonForms.h>

#include <filesystem>
#include <vector>

namespace CommandLine {

Roamly::ImportOutcome importFolders(Roamly::ProjectDocument& document, std::span<const std::string> folders,
                                    const Invocation& invocation) {
    const std::vector<std::filesystem::path> paths(folders.begin(), folders.end());
    Roamly::ImportCoordinator::Options options;
    options.stop = invocation.stop;
    options.progress = [&](const std::filesystem::path& folder,
                           const PhotoSources::ImportProgress& progress) {
        const double fraction = progress.total == 0 ? 1.0
                                                    : static_cast<double>(progress.completed) /
                                                          static_cast<double>(progress.total);
        invocation.console.progress("Importing " + Roamly::ImportCoordinator::folderName(folder), fraction,
                                    [&](Foundation::JsonWriter& json) { JsonForms::write(json, progress); });
    };
    Roamly::ImportOutcome outcome = Roamly::ImportCoordinator::importFolders(document, paths, options);
    // Ctrl-C after the last photo, and before anything is saved, is one all the same.
    Foundation::throwIfStopped(invocation.stop);
    for (const std::string& notice : outcome.notices)
        invocation.console.warn(notice);
    return outcome;
}

std::string addedSentence(const Roamly::ImportOutcome& outcome, const ProjectModel::Project& project) {
    return "Added " + counted(outcome.added, "photo") + "; the project holds " +
           std::to_string(project.photos.size()) + ".";
}

} // namespace CommandLine
