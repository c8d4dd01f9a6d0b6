// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <Roamly/Window/Shell/DocumentFlow.h>
#include <Roamly/Window/Shell/EventLoop.h>

#include <chrono>
#include <utility>

namespace Shell {

using Jobs::ProjectFile;
using Outcome = ProjectFile::Outcome;
using AnothersChange = ProjectFile::AnothersChange;

namespace {

QString shown(const std::filesystem::path& path) {
    return QString::fromStdString(Foundation::displayText(path));
}

} // namespace

DocumentFlow::DocumentFlow(Document::ProjectDocument& document, DocumentQuestions questions, QObject* parent)
    : QObject(parent)
    , m_document(&document)
    , m_questions(std::move(questions))
    , m_file(executorOf(this), document, [this] { Q_EMIT changed(); }) {
    m_look.setSingleShot(true);
    m_look.setInterval(std::chrono::milliseconds{200});
    connect(&m_look, &QTimer::timeout, this, &DocumentFlow::lookAtFile);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_look, qOverload<>(&QTimer::start));
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_look, qOverload<>(&QTimer::start));
}

QString DocumentFlow::name() const {
    const auto& path = openingOrOpen();
    return path ? shown(path->stem()) : QStringLiteral("Untitled");
}

bool DocumentFlow::isModified() const {
    return m_document->isModified();
}

bool DocumentFlow::isUntouched() const {
    return !m_file.path() && m_file.state().doing == ProjectFile::Doing::Nothing &&
           !m_document->isModified() && !m_document->canUndo() && !m_document->canRedo();
}

void DocumentFlow::open(const std::filesystem::path& path) {
    m_opening = path;
    m_file.open(path, [this](const ProjectFile::Ending& ending) {
        m_opening.reset();
        if (ending.outcome == Outcome::Done) {
            watch();
            Q_EMIT loaded();
            return;
        }
        if (ending.outcome == Outcome::Failed)
            m_questions.tell(QString::fromStdString(ending.sentence));
        Q_EMIT changed();
        Q_EMIT openingFailed();
    });
}

void DocumentFlow::save(const Then& then) {
    if (!m_file.path())
        return saveAs({}, then);
    try {
        Document::ProjectStore::checkCanSave(*m_file.path());
    } catch (const Document::ProjectStoreError& error) {
        return saveAs(QString::fromUtf8(error.what()), then);
    }
    write(m_keepsMine ? AnothersChange::Overwrite : AnothersChange::Refuse, then);
}

void DocumentFlow::write(AnothersChange anothersChange, const Then& then) {
    m_file.save(anothersChange,
                [this, then](const ProjectFile::Ending& ending) { finishSaving(ending, then); });
}

void DocumentFlow::saveAs(const QString& sentence, const Then& then) {
    const std::filesystem::path proposed = m_file.path().value_or("Untitled.roamly");
    m_questions.whereToSave(sentence, proposed, [this, then](const std::filesystem::path& path) {
        m_file.saveAs(path, [this, then](const ProjectFile::Ending& ending) { finishSaving(ending, then); });
    });
}

void DocumentFlow::finishSaving(const ProjectFile::Ending& ending, const Then& then) {
    switch (ending.outcome) {
    case Outcome::Done:
        m_keepsMine = false;
        watch();
        Q_EMIT saved();
        if (then)
            then();
        return;
    case Outcome::Conflict:
        return askAboutFilesChange(true, then);
    case Outcome::Failed:
        return m_questions.tell(QString::fromStdString(ending.sentence));
    case Outcome::Cancelled:
        return;
    }
}

void DocumentFlow::askAboutFilesChange(bool isSaving, const Then& then) {
    if (std::exchange(m_isAsking, true))
        return;
    m_questions.fileChanged(name(), [this, isSaving, then](ChangedFileAnswer answer) {
        m_isAsking = false;
        switch (answer) {
        case ChangedFileAnswer::KeepMine:
            m_keepsMine = true;
            if (isSaving)
                write(AnothersChange::Overwrite, then);
            return;
        case ChangedFileAnswer::LoadTheFiles:
            return reload();
        case ChangedFileAnswer::Cancel:
            return;
        }
    });
}

void DocumentFlow::revert() {
    if (m_file.path())
        reload();
}

void DocumentFlow::reload() {
    m_keepsMine = false;
    m_file.reload([this](const ProjectFile::Ending& ending) {
        if (ending.outcome == Outcome::Done) {
            watch();
            Q_EMIT loaded();
        } else if (ending.outcome == Outcome::Failed) {
            m_questions.tell(QString::fromStdString(ending.sentence));
        }
    });
}

void DocumentFlow::askToLeave(std::function<void()> leave) {
    if (!isModified())
        return leave();
    m_questions.saveChanges(name(), [this, leave = std::move(leave)](SaveAnswer answer) {
        if (answer == SaveAnswer::Discard)
            leave();
        else if (answer == SaveAnswer::Save)
            save(leave);
        else
            Q_EMIT leavingRefused();
    });
}

void DocumentFlow::lookAtFile() {
    if (m_file.state().doing != ProjectFile::Doing::Nothing || m_keepsMine || m_isAsking ||
        !m_file.isChangedOnDisk())
        return;
    if (isModified())
        return askAboutFilesChange(false, {});
    reload();
    Q_EMIT noticed(QStringLiteral("Another program changed “%1”; this is what it holds now.").arg(name()));
}

void DocumentFlow::stopWaiting() {
    m_file.cancel();
}

void DocumentFlow::restore(ProjectModel::Project project, const std::optional<std::filesystem::path>& path) {
    m_document->edit("Recover Changes",
                     [&](ProjectModel::Project& present) { present = std::move(project); });
    if (path)
        m_file.adopt(*path);
    watch();
    Q_EMIT loaded();
}

/// Programs replace files instead of writing into them, so the folder is watched too.
void DocumentFlow::watch() {
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
    if (m_file.path()) {
        m_watcher.addPath(QString::fromStdString(m_file.path()->string()));
        m_watcher.addPath(QString::fromStdString(m_file.path()->parent_path().string()));
    }
    Q_EMIT changed();
}

} // namespace Shell
