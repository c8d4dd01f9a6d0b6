// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/ProjectFile.h>
#include <Roamly/Window/Shell/DocumentQuestions.h>

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <optional>

namespace Shell {

/// The way of a document from file to file: opening, saving, going back, leaving, and what to do when another
/// program was there meanwhile. It asks what only the user can decide.
class DocumentFlow : public QObject {
    Q_OBJECT

public:
    /// Borrows the document.
    DocumentFlow(Document::ProjectDocument& document, DocumentQuestions questions, QObject* parent = nullptr);

    [[nodiscard]] const Jobs::ProjectFile& file() const { return m_file; }
    /// The file that is open or about to be.
    [[nodiscard]] const std::optional<std::filesystem::path>& openingOrOpen() const {
        return m_opening ? m_opening : m_file.path();
    }
    /// "Lisbon", or "Untitled".
    [[nodiscard]] QString name() const;
    /// Differs from its file, or is a new one that holds something.
    [[nodiscard]] bool isModified() const;
    /// A new document in which nothing was done yet.
    [[nodiscard]] bool isUntouched() const;

    void open(const std::filesystem::path& path);
    void save() { save({}); }
    void saveAs() { saveAs({}, {}); }
    void revert();
    /// Calls `leave` when the document may be left: nothing is unsaved, or the user said what to do with it.
    void askToLeave(std::function<void()> leave);
    /// Looks whether another program wrote the file.
    void lookAtFile();
    /// Gives up waiting for another program.
    void stopWaiting();

    /// What a crash left: the project is there, unsaved, and its file is the one it was made from.
    void restore(ProjectModel::Project project, const std::optional<std::filesystem::path>& path);

Q_SIGNALS:
    /// The file's name, or whether it waits or works.
    void changed();
    /// Read from its file, for the first time or anew.
    void loaded();
    /// Could not be read: nothing is open that was not before.
    void openingFailed();
    void saved();
    void noticed(const QString& text);
    /// The user does not leave after all.
    void leavingRefused();

private:
    using Then = std::function<void()>;

    void save(const Then& then);
    void saveAs(const QString& sentence, const Then& then);
    void write(Jobs::ProjectFile::AnothersChange anothersChange, const Then& then);
    void finishSaving(const Jobs::ProjectFile::Ending& ending, const Then& then);
    void reload();
    /// Keeping what is here goes on with saving where that was under way.
    void askAboutFilesChange(bool isSaving, const Then& then);
    void watch();

    Document::ProjectDocument* m_document;
    DocumentQuestions m_questions;
    Jobs::ProjectFile m_file;
    /// Being read for the first time.
    std::optional<std::filesystem::path> m_opening;
    QFileSystemWatcher m_watcher;
    /// Several signs of one change are one.
    QTimer m_look;
    bool m_isAsking = false;
    /// The user was asked about the file's change and keeps what is here.
    bool m_keepsMine = false;
};

} // namespace Shell
