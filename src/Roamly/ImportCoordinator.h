#pragma once

#include <Foundation/Uuid.h>
#include <PhotoSources/FolderImporter.h>
#include <Roamly/ProjectDocument.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace Roamly {

struct ImportOutcome {
    /// Photos that the project did not hold before.
    std::size_t added = 0;
    /// One sentence for each folder that could not be imported, in the order of the folders.
    std::vector<std::string> notices;

    /// The notices as one text, a line each; nothing when all went well.
    [[nodiscard]] std::optional<std::string> notice() const;

    friend bool operator==(const ImportOutcome&, const ImportOutcome&) = default;
};

namespace ImportCoordinator {

struct Options {
    Foundation::UuidSource newID = Foundation::Uuid::random;
    /// The folder that is being read, and how far. Called from the calling thread.
    std::function<void(const std::filesystem::path&, const PhotoSources::ImportProgress&)> progress;
    std::stop_token stop;
};

/// Adds the folders' photos, one folder after the other, and registers each folder that brought new ones as a
/// source. Throws only Foundation::Cancelled; the folders before the interrupted one are imported then.
ImportOutcome importFolders(ProjectDocument& document, std::span<const std::filesystem::path> folders,
                            const Options& options = {});

/// The last component of a folder's absolute path, as notices name it.
[[nodiscard]] std::string folderName(const std::filesystem::path& folder);

} // namespace ImportCoordinator

} // namespace Roamly
