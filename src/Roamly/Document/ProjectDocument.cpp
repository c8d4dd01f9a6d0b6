// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ProjectDocument.h>

#include <stdexcept>
#include <utility>

namespace Document {

using ProjectModel::Project;

ProjectDocument::ProjectDocument(Project project)
    : m_project(std::move(project))
    , m_recorded(m_project)
    , m_saved(m_project) {}

void ProjectDocument::record(const EditName& name) {
    ProjectDifference difference = Document::difference(m_recorded, m_project);
    if (difference.isEmpty())
        return;
    if (!m_history.continues(name)) {
        apply(difference, m_recorded);
        tell(m_history.add(name, std::move(difference)));
        return;
    }
    // The record goes back to where the step began, so that the step is what differs from there.
    apply(inverted(m_history.takeNewest()), m_recorded);
    ProjectDifference whole = Document::difference(m_recorded, m_project);
    apply(whole, m_recorded);
    if (!whole.isEmpty())
        m_history.add(name, std::move(whole));
    tell(difference);
}

void ProjectDocument::undo() {
    refuseWhileTelling();
    if (canUndo())
        carryOut(m_history.undo());
}

void ProjectDocument::redo() {
    refuseWhileTelling();
    if (canRedo())
        carryOut(m_history.redo());
}

void ProjectDocument::carryOut(const ProjectDifference& difference) {
    apply(difference, m_project);
    apply(difference, m_recorded);
    tell(difference);
}

bool ProjectDocument::isModified() const {
    if (!m_isModified)
        m_isModified = !(m_project == m_saved);
    return *m_isModified;
}

void ProjectDocument::markSaved() {
    m_saved = m_project;
    m_isModified = false;
    m_unsavedRefreshes.clear();
}

void ProjectDocument::markSaved(const ProjectModel::Project& written) {
    m_saved = written;
    // Those that came meanwhile are no modification either; they are written with the next save.
    m_saved.refreshPhotos(ProjectModel::PhotoRefreshes{m_unsavedRefreshes});
    if (m_saved == written)
        m_unsavedRefreshes.clear();
    m_isModified.reset();
}

void ProjectDocument::refresh(const std::vector<ProjectModel::PhotoRefresh>& refreshes) {
    refuseWhileTelling();
    const ProjectModel::PhotoRefreshes found{refreshes};
    m_project.refreshPhotos(found);
    m_saved.refreshPhotos(found);
    m_history.refresh(found);
    const ProjectDifference difference = Document::difference(m_recorded, m_project);
    if (difference.isEmpty())
        return;
    m_unsavedRefreshes.insert(m_unsavedRefreshes.end(), refreshes.begin(), refreshes.end());
    apply(difference, m_recorded);
    tell(difference);
}

void ProjectDocument::replace(Project project) {
    refuseWhileTelling();
    m_history.clear();
    m_unsavedRefreshes.clear();
    m_project = std::move(project);
    m_saved = m_project;
    const ProjectDifference difference = Document::difference(m_recorded, m_project);
    if (difference.isEmpty()) {
        m_isModified = false;
        return;
    }
    apply(difference, m_recorded);
    tell(difference);
}

ProjectDocument::Subscription ProjectDocument::addListener(Listener listener) {
    auto subscription = std::make_shared<const Listener>(std::move(listener));
    m_listeners.emplace_back(subscription);
    return subscription;
}

void ProjectDocument::tell(const ProjectDifference& difference) {
    m_isModified.reset();
    std::erase_if(m_listeners, [](const auto& listener) { return listener.expired(); });
    struct Telling {
        explicit Telling(bool& isTelling)
            : m_isTelling(isTelling) {
            m_isTelling = true;
        }
        ~Telling() { m_isTelling = false; }
        Telling(const Telling&) = delete;
        Telling& operator=(const Telling&) = delete;

    private:
        bool& m_isTelling;
    };
    const Telling telling{m_isTelling};
    // Listeners may come and go while they are told.
    const std::vector<std::weak_ptr<const Listener>> listeners = m_listeners;
    for (const std::weak_ptr<const Listener>& listener : listeners) {
        if (const Subscription living = listener.lock())
            (*living)(difference);
    }
}

void ProjectDocument::refuseWhileTelling() const {
    if (m_isTelling)
        throw std::logic_error("A listener of the document changed it.");
}

} // namespace Document
