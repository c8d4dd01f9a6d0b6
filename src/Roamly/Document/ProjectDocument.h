#pragma once

#include <ProjectModel/Project.h>

#include <functional>
#include <string>
#include <utility>

namespace Document {

/// What a step is called in the menus, "Remove 3 Photos", and which steps that follow each other count as
/// one: those of the same key, such as the letters of one caption. Without a key each stands alone.
struct EditName {
    // Most steps have a name only.
    // NOLINTNEXTLINE(google-explicit-constructor)
    EditName(std::string nameText, std::string key = {})
        : text(std::move(nameText))
        , mergeKey(std::move(key)) {}
    // NOLINTNEXTLINE(google-explicit-constructor)
    EditName(const char* nameText)
        : text(nameText) {}

    std::string text;
    std::string mergeKey;
};

/// The open project, and the one way to change it. Whoever holds the document (a window, a command) hands it
/// to the controllers; the listener hears of every change. Belongs to one thread.
class ProjectDocument {
public:
    explicit ProjectDocument(ProjectModel::Project project = ProjectModel::Project::empty(),
                             std::function<void()> changed = {})
        : m_project(std::move(project))
        , m_changed(std::move(changed)) {}

    [[nodiscard]] const ProjectModel::Project& project() const { return m_project; }

    /// Changes the project by one step, which `name` tells in the menus: "Remove 3 Photos".
    template <typename Change>
    void edit(const EditName& /*name*/, const Change& change) {
        change(m_project);
        if (m_changed)
            m_changed();
    }

private:
    ProjectModel::Project m_project;
    std::function<void()> m_changed;
};

} // namespace Document
