#pragma once

#include <Roamly/CommandLine/Command.h>
#include <Roamly/CommandLine/ProjectLock.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Document/ProjectStore.h>

#include <filesystem>
#include <optional>

namespace CommandLine {

/// A project that a command changes: locked, loaded, and saved when the command says so.
class ProjectSession {
public:
    /// How long it takes from opening to saving. Long work is not begun when it could not be saved.
    enum class Work { Quick, Long };

    /// Throws ProjectStoreError, Foundation::Cancelled.
    ProjectSession(const std::filesystem::path& path, Work work, const Invocation& invocation);

    [[nodiscard]] const ProjectModel::Project& project() const { return m_document.project(); }
    [[nodiscard]] Document::ProjectDocument& document() { return m_document; }

    /// Writes the file unless it holds just this already; true when it did. Throws ProjectStoreError, also
    /// when another program wrote the file since it was loaded.
    bool save();

private:
    std::filesystem::path m_path;
    ProjectLock m_lock;
    Document::ProjectDocument m_document;
    ProjectModel::Project m_saved;
    std::optional<Document::ProjectStore::FileVersion> m_version;
    bool m_mustSave = false;
};

} // namespace CommandLine
