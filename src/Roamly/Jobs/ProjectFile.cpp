// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ProjectLock.h>
#include <Roamly/Jobs/ProjectFile.h>

#include <memory>
#include <utility>

namespace Jobs {

using Document::ProjectStore::FileVersion;

ProjectFile::ProjectFile(Executor executor, Document::ProjectDocument& document,
                         std::function<void()> changed)
    : m_document(&document)
    , m_changed(std::move(changed))
    , m_job(std::move(executor), Job::WhenStopped::RunOut) {}

bool ProjectFile::isChangedOnDisk() const {
    if (!m_path)
        return false;
    const std::optional<FileVersion> now = Document::ProjectStore::versionOf(*m_path);
    return now && now != m_version;
}

bool ProjectFile::hasSomethingToWrite() const {
    return m_hasNewIdentifiers || m_document->isModified() || !m_document->unsavedRefreshes().empty();
}

bool ProjectFile::open(const std::filesystem::path& path, Ended ended) {
    return start(
        Doing::Reading,
        [this, path](const Job::Run& run) -> Job::Landing {
            const Document::ProjectLock lock{path,
                                             {.stop = run.stop(), .waiting = [&] {
                                                  run.post([this] { setState({Doing::Reading, true}); });
                                              }}};
            const std::optional<FileVersion> version = Document::ProjectStore::versionOf(path);
            auto loaded = std::make_shared<Document::LoadedProject>(Document::ProjectStore::load(path));
            return [this, path, version, loaded] {
                m_path = path;
                m_version = version;
                m_hasNewIdentifiers = loaded->hasNewIdentifiers;
                m_document->replace(std::move(loaded->project));
                m_ending = {};
            };
        },
        std::move(ended));
}

bool ProjectFile::reload(Ended ended) {
    return m_path && open(*m_path, std::move(ended));
}

bool ProjectFile::save(AnothersChange anothersChange, Ended ended) {
    return m_path && write(*m_path, anothersChange == AnothersChange::Refuse, std::move(ended));
}

bool ProjectFile::saveAs(const std::filesystem::path& path, Ended ended) {
    return write(path, false, std::move(ended));
}

void ProjectFile::cancel() {
    (void)m_job.stop();
}

void ProjectFile::adopt(const std::filesystem::path& path) {
    m_path = path;
    m_version = Document::ProjectStore::versionOf(path);
}

bool ProjectFile::write(const std::filesystem::path& path, bool mustBeUnchanged, Ended ended) {
    // The document goes on while this is written.
    const auto project = std::make_shared<const ProjectModel::Project>(m_document->project());
    return start(
        Doing::Writing,
        [this, path, mustBeUnchanged, project, known = m_version](const Job::Run& run) -> Job::Landing {
            const Document::ProjectLock lock{path,
                                             {.stop = run.stop(), .waiting = [&] {
                                                  run.post([this] { setState({Doing::Writing, true}); });
                                              }}};
            if (mustBeUnchanged) {
                try {
                    Document::ProjectStore::checkIsUnchanged(path, known);
                } catch (const Document::SaveConflict& conflict) {
                    return [this, sentence = std::string{conflict.what()}] {
                        m_ending = {Outcome::Conflict, sentence};
                    };
                }
            }
            Document::ProjectStore::save(path, *project);
            const std::optional<FileVersion> written = Document::ProjectStore::versionOf(path);
            return [this, path, written, project] {
                m_path = path;
                m_version = written;
                m_hasNewIdentifiers = false;
                m_document->markSaved(*project);
                m_ending = {};
            };
        },
        std::move(ended));
}

bool ProjectFile::start(Doing doing, Job::Work work, Ended ended) {
    if (m_job.isRunning())
        return false;
    // Unless the landing comes to say something else: also what was written before a wish to stop was heard
    // is written.
    m_ending = {Outcome::Cancelled};
    (void)m_job.start(std::move(work), [this, ended = std::move(ended)](const Job::Ending& job) {
        Ending ending = m_ending;
        if (job.failure)
            ending = {Outcome::Failed, *job.failure};
        m_state = {};
        if (m_changed)
            m_changed();
        if (ended)
            ended(ending);
    });
    setState({doing, false});
    return true;
}

void ProjectFile::setState(State state) {
    m_state = state;
    if (m_changed)
        m_changed();
}

} // namespace Jobs
