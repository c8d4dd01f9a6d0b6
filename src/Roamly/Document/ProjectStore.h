// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace Document {

/// A project file could not be read, made or written. `what()` is one sentence for the user that names the
/// file.
class ProjectStoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Nothing was written because another program wrote the file meanwhile.
class SaveConflict : public ProjectStoreError {
public:
    using ProjectStoreError::ProjectStoreError;
};

struct LoadedProject {
    ProjectModel::Project project;
    /// The file is of an older layout and its sources got new identifiers, which last only once it is saved.
    bool hasNewIdentifiers = false;
};

namespace ProjectStore {

/// Tells one version of a file from another, without reading it.
struct FileVersion {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;

    bool operator==(const FileVersion&) const = default;
};

/// Nothing when there is no such file.
[[nodiscard]] std::optional<FileVersion> versionOf(const std::filesystem::path& path);

/// Throws ProjectStoreError.
[[nodiscard]] LoadedProject load(const std::filesystem::path& path);

/// Replaces the file so that after a crash it holds the old project or the new one. Throws ProjectStoreError
/// and leaves the file as it was.
void save(const std::filesystem::path& path, const ProjectModel::Project& project);

/// Throws SaveConflict when the file is another one than `version` tells: somebody else wrote it
/// meanwhile, and saving would take that away. A file that is gone is no obstacle.
void checkIsUnchanged(const std::filesystem::path& path, const std::optional<FileVersion>& version);

/// Throws ProjectStoreError, as `save` and `create` would, when nothing could be saved under that name now.
/// For work that is long and lost if it cannot be saved.
void checkCanSave(const std::filesystem::path& path);

/// Makes a new file and never touches one that exists, also when two processes try at the same time. Throws
/// ProjectStoreError.
void create(const std::filesystem::path& path, const ProjectModel::Project& project);

} // namespace ProjectStore

} // namespace Document
