#include <Roamly/CommandLine/ProjectSession.h>

namespace CommandLine {

ProjectSession::ProjectSession(const std::filesystem::path& path, Work work, const Invocation& invocation)
    : m_path(path)
    , m_lock(path, invocation.stop,
             [&] { invocation.console.say("Waiting for another command that is changing the project."); }) {
    m_version = Document::ProjectStore::versionOf(path);
    Document::LoadedProject loaded = Document::ProjectStore::load(path);
    if (work == Work::Long)
        Document::ProjectStore::checkCanSave(path);
    m_saved = loaded.project;
    m_document = Document::ProjectDocument{std::move(loaded.project)};
    // Identifiers that were just given out must last, or nobody could name a source by what `sources`
    // printed.
    m_mustSave = loaded.hasNewIdentifiers;
}

bool ProjectSession::save() {
    if (!m_mustSave && project() == m_saved)
        return false;
    Document::ProjectStore::checkIsUnchanged(m_path, m_version);
    Document::ProjectStore::save(m_path, project());
    m_version = Document::ProjectStore::versionOf(m_path);
    m_saved = project();
    m_mustSave = false;
    return true;
}

} // namespace CommandLine
