// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bytes.h>
#include <Foundation/Uuid.h>
#include <PhotoSources/FolderImporter.h>
#include <ProjectModel/IdentityKeys.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/Job.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace Jobs {

struct ImportOutcome {
    /// Photos that the project did not hold before.
    std::size_t added = 0;
    /// One sentence for each folder that could not be imported, in the order of the folders.
    std::vector<std::string> notices;

    /// The notices as one text, a line each; nothing when all went well.
    [[nodiscard]] std::optional<std::string> notice() const;

    friend bool operator==(const ImportOutcome&, const ImportOutcome&) = default;
};

/// What importing needs of the machine. Worker's thread.
struct ImportEnvironment {
    Foundation::UuidSource newID;
    /// Nothing when there is no such folder or it cannot be examined.
    std::function<std::optional<Foundation::Bytes>(const std::filesystem::path& folder)> bookmarkOfFolder;
    /// The folder's photos in a stable order, none when there are none. Throws Foundation::Cancelled.
    std::function<std::vector<ProjectModel::PhotoItem>(const std::filesystem::path& folder,
                                                       const PhotoSources::FolderImporter::Options& options)>
        photosInFolder;
    /// Which photos are the same; `photos` may repeat. Throws Foundation::Cancelled.
    std::function<ProjectModel::IdentityKeys(std::span<const ProjectModel::PhotoItem> photos,
                                             const std::stop_token& stop)>
        identityKeys;
};

/// Imports folders into the open project, one import at a time, as one step of its history. Owner's thread.
class ImportCoordinator {
public:
    struct State {
        bool isRunning = false;
        /// It was asked to end and has not yet.
        bool isStopping = false;
        /// "Importing Rome".
        std::optional<std::string> progressText;
        /// Of the folder that is being read.
        std::optional<PhotoSources::ImportProgress> progress;
        bool wasCancelled = false;
        /// What the last import brought.
        ImportOutcome outcome;
        /// It could not be done at all: one sentence.
        std::optional<std::string> errorText;
    };

    /// `changed` is called after each change of the state.
    ImportCoordinator(Executor executor, ImportEnvironment environment, std::function<void()> changed = {});

    [[nodiscard]] const State& state() const { return m_state; }

    /// Adds the folders' photos, one folder after the other, and registers each folder that brought new ones
    /// as a source; returns at once. Ignored while an import runs. The document must outlive the run.
    void importFolders(Document::ProjectDocument& document, std::vector<std::filesystem::path> folders);

    /// Asks the import to end; the folders before the interrupted one are imported then.
    void cancel();

    /// The last component of a folder's absolute path, as notices name it.
    [[nodiscard]] static std::string folderName(const std::filesystem::path& folder);

private:
    void changed() const;

    std::shared_ptr<const ImportEnvironment> m_environment;
    State m_state;
    std::function<void()> m_changed;
    Job m_job;
};

} // namespace Jobs
