#pragma once

#include <ProjectModel/Project.h>

#include <functional>
#include <utility>

namespace Roamly {

/// The open project, and the one way to change it. Whoever holds the document (a window, a command) hands it
/// to the controllers; the listener hears of every change. Belongs to one thread.
class ProjectDocument {
public:
    explicit ProjectDocument(ProjectModel::Project project = ProjectModel::Project::empty(),
                             std::function<void()> changed = {})
        : m_project(std::move(project))
        , m_changed(std::move(changed)) {}

    [[nodiscard]] const ProjectModel::Project& project() const { return m_project; }

    template <typename Change>
    void edit(const Change& change) {
        change(m_project);
        if (m_changed)
            m_changed();
    }

private:
    ProjectModel::Project m_project;
    std::function<void()> m_changed;
};

} // namespace Roamly
