// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/DocumentSession.h>
#include <Roamly/Document/ThreeWayMerge.h>

#include <utility>

namespace Document {

DocumentSession::DocumentSession() = default;

DocumentSession::DocumentSession(std::filesystem::path path, const LockWait& wait, Lock lock)
    : m_path(std::move(path))
    , m_lock(std::make_unique<ProjectLock>(*m_path, wait)) {
    reload();
    if (lock == Lock::WhileReadOrWritten)
        m_lock.reset();
}

bool DocumentSession::isChangedOnDisk() const {
    if (!m_path)
        return false;
    const std::optional<ProjectStore::FileVersion> now = ProjectStore::versionOf(*m_path);
    return now && now != m_version;
}

void DocumentSession::checkCanSave() const {
    ProjectStore::checkCanSave(m_path.value());
}

bool DocumentSession::save(const LockWait& wait, AnothersChange anothersChange) {
    const std::unique_ptr<ProjectLock> lock = locked(wait);
    if (!hasSomethingToWrite())
        return false;
    if (anothersChange == AnothersChange::Refuse)
        ProjectStore::checkIsUnchanged(*m_path, m_version);
    write();
    return true;
}

bool DocumentSession::saveMerged(const LockWait& wait) {
    const std::unique_ptr<ProjectLock> lock = locked(wait);
    if (!hasSomethingToWrite())
        return false;
    if (isChangedOnDisk())
        mergeWithFile();
    write();
    return true;
}

void DocumentSession::saveAs(const std::filesystem::path& path, const LockWait& wait) {
    const ProjectLock lock{path, wait};
    ProjectStore::save(path, project());
    m_path = path;
    m_lock.reset();
    m_version = ProjectStore::versionOf(path);
    m_hasNewIdentifiers = false;
    m_document.markSaved();
}

void DocumentSession::reload(const LockWait& wait) {
    const std::unique_ptr<ProjectLock> lock = locked(wait);
    const std::optional<ProjectStore::FileVersion> version = ProjectStore::versionOf(*m_path);
    LoadedProject loaded = ProjectStore::load(*m_path);
    m_version = version;
    m_hasNewIdentifiers = loaded.hasNewIdentifiers;
    m_document.replace(std::move(loaded.project));
}

bool DocumentSession::hasSomethingToWrite() const {
    return m_hasNewIdentifiers || m_document.isModified() || !m_document.unsavedRefreshes().empty() ||
           !ProjectStore::versionOf(*m_path);
}

std::unique_ptr<ProjectLock> DocumentSession::locked(const LockWait& wait) {
    return m_lock ? nullptr : std::make_unique<ProjectLock>(m_path.value(), wait);
}

void DocumentSession::write() {
    ProjectStore::save(*m_path, project());
    m_version = ProjectStore::versionOf(*m_path);
    // The file that was locked is no longer the one of that name.
    m_lock.reset();
    m_hasNewIdentifiers = false;
    m_document.markSaved();
}

void DocumentSession::mergeWithFile() {
    const ProjectModel::Project theirs = ProjectStore::load(*m_path).project;
    const ProjectModel::PhotoRefreshes refreshes{m_document.unsavedRefreshes()};
    m_document.seal();
    m_document.edit("Merge Changes", [&](ProjectModel::Project& project) {
        project = merged(m_document.saved(), project, theirs);
        // What is newly known of the disk is in the base too, so that the merge took it for no change.
        project.refreshPhotos(refreshes);
    });
}

} // namespace Document
