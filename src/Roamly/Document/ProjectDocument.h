// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>
#include <Roamly/Document/EditName.h>
#include <Roamly/Document/History.h>
#include <Roamly/Document/ProjectDifference.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Document {

/// The open project, and the one way to change it. Whoever holds the document (a window, a command) hands it
/// to the controllers; listeners hear what each change made different. Belongs to one thread.
class ProjectDocument {
public:
    using Listener = std::function<void(const ProjectDifference&)>;
    /// A listener hears of changes as long as this lives.
    using Subscription = std::shared_ptr<const Listener>;

    /// The project is taken for saved.
    explicit ProjectDocument(ProjectModel::Project project = ProjectModel::Project::empty());

    [[nodiscard]] const ProjectModel::Project& project() const { return m_project; }

    /// Changes the project by one step, which `name` tells in the menus: "Remove 3 Photos". What changes
    /// nothing is no step and nobody hears of it. An edit that throws has changed nothing.
    template <typename Change>
    void edit(const EditName& name, const Change& change) {
        refuseWhileTelling();
        try {
            change(m_project);
        } catch (...) {
            m_project = m_recorded;
            throw;
        }
        record(name);
    }

    [[nodiscard]] bool canUndo() const { return m_history.undoName().has_value(); }
    [[nodiscard]] bool canRedo() const { return m_history.redoName().has_value(); }
    /// Nothing when there is nothing to undo (to redo).
    [[nodiscard]] std::optional<std::string> undoName() const { return m_history.undoName(); }
    [[nodiscard]] std::optional<std::string> redoName() const { return m_history.redoName(); }
    /// Do nothing when there is nothing to undo (to redo).
    void undo();
    void redo();
    /// The last step is complete, also when an edit with its key follows: the user left the field.
    void seal() { m_history.seal(); }

    /// Whether it differs from what was saved or loaded last, however it came to.
    [[nodiscard]] bool isModified() const;
    /// The project as it was saved or loaded last.
    [[nodiscard]] const ProjectModel::Project& saved() const { return m_saved; }
    /// The project was written as it is.
    void markSaved();
    /// The project was written as it was a moment ago.
    void markSaved(const ProjectModel::Project& written);

    /// Takes in where photos' pixels were found: no step and no modification, and no step leads back to what
    /// was known before. Listeners are told.
    void refresh(const std::vector<ProjectModel::PhotoRefresh>& refreshes);
    /// The refreshes since it was saved or loaded last: a reason to write them too, none to ask.
    [[nodiscard]] const std::vector<ProjectModel::PhotoRefresh>& unsavedRefreshes() const {
        return m_unsavedRefreshes;
    }

    /// Another project is loaded in its place: saved, and without a history.
    void replace(ProjectModel::Project project);

    /// Listeners are called after each change, in the order in which they came. They must not change the
    /// document: that throws std::logic_error.
    [[nodiscard]] Subscription addListener(Listener listener);

    /// What the steps that can be undone and redone take of memory.
    [[nodiscard]] std::size_t historyBytes() const { return m_history.bytes(); }

private:
    void record(const EditName& name);
    void carryOut(const ProjectDifference& difference);
    void tell(const ProjectDifference& difference);
    void refuseWhileTelling() const;

    ProjectModel::Project m_project;
    /// The project as the history and the listeners know it: each edit is told by comparing the two.
    ProjectModel::Project m_recorded;
    ProjectModel::Project m_saved;
    /// Answers to `isModified`, until the project or what is saved changes.
    mutable std::optional<bool> m_isModified;
    History m_history;
    std::vector<ProjectModel::PhotoRefresh> m_unsavedRefreshes;
    std::vector<std::weak_ptr<const Listener>> m_listeners;
    bool m_isTelling = false;
};

} // namespace Document
