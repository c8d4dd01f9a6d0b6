// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Document/ProjectLock.h>
#include <Roamly/Document/ProjectStore.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace Document {

/// A document and the file it is read from and written to. The file is locked only while it is read or
/// written, unless one asks for more, so that a window and commands take turns. Belongs to one thread; what
/// waits for the lock can be cancelled (`LockWait`) and throws Foundation::Cancelled then.
class DocumentSession {
public:
    enum class Lock {
        WhileReadOrWritten,
        /// From reading to the first writing, or to the end: a quick change that nobody can come between.
        UntilWritten,
    };
    enum class AnothersChange { Refuse, Overwrite };

    /// A new document, which has no file yet.
    DocumentSession();
    /// Throws ProjectStoreError.
    explicit DocumentSession(std::filesystem::path path, const LockWait& wait = {},
                             Lock lock = Lock::WhileReadOrWritten);

    [[nodiscard]] const ProjectModel::Project& project() const { return m_document.project(); }
    [[nodiscard]] ProjectDocument& document() { return m_document; }
    [[nodiscard]] const ProjectDocument& document() const { return m_document; }
    /// Nothing while the document has no file.
    [[nodiscard]] const std::optional<std::filesystem::path>& path() const { return m_path; }

    /// Whether another program wrote the file since it was read or written here. A file that is gone was not
    /// written.
    [[nodiscard]] bool isChangedOnDisk() const;

    /// Throws ProjectStoreError when the file could not be written now: for work that is long and lost if it
    /// cannot be saved.
    void checkCanSave() const;

    /// Writes the file unless it holds just this already; true when it did. Throws SaveConflict, unless told
    /// to overwrite, when another program wrote the file meanwhile, and ProjectStoreError. Calling it without
    /// a file is the caller's error.
    bool save(const LockWait& wait = {}, AnothersChange anothersChange = AnothersChange::Refuse);

    /// As `save`, but what another program wrote meanwhile is read and merged with the document
    /// (ThreeWayMerge) as one step, so that neither is lost.
    bool saveMerged(const LockWait& wait = {});

    /// Writes the document to another file, replacing one that is there; that is its file from then on.
    /// Throws ProjectStoreError, and all is as before.
    void saveAs(const std::filesystem::path& path, const LockWait& wait = {});

    /// Reads the file again: what was not saved is lost, and the history too. Throws ProjectStoreError, and
    /// all is as before.
    void reload(const LockWait& wait = {});

private:
    [[nodiscard]] bool hasSomethingToWrite() const;
    /// Has the lock held while it lives, without waiting for a lock that the session holds itself.
    [[nodiscard]] std::unique_ptr<ProjectLock> locked(const LockWait& wait);
    void write();
    void mergeWithFile();

    std::optional<std::filesystem::path> m_path;
    std::unique_ptr<ProjectLock> m_lock;
    ProjectDocument m_document;
    std::optional<ProjectStore::FileVersion> m_version;
    /// Identifiers were given out on reading and must last, or nobody could name a source by what was
    /// printed.
    bool m_hasNewIdentifiers = false;
};

} // namespace Document
