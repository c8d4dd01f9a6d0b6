// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/AIProvider.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Window/Shell/Intent.h>
#include <Roamly/Window/Shell/WindowServices.h>
#include <Roamly/Window/Shell/Work.h>

#include <QObject>
#include <optional>
#include <set>

class QWidget;

namespace Shell {

/// Carries out what the user wants of the document and of the work. What needs an answer first is asked over
/// the window.
class WindowCommands : public QObject {
    Q_OBJECT

public:
    /// Borrows all but the services.
    WindowCommands(QWidget& window, Document::ProjectDocument& document, Work& work,
                   const WindowServices& services);
    ~WindowCommands() override;

    // Of the work.
    void importPhotos(const Paths& folders);
    void analyze();
    void generateCaptions();
    void regenerateCaption(const Foundation::Uuid& photo);

    // Of the document; each is one step.
    void resetAnalysis();
    void sortByDate();
    void remove(const std::set<Foundation::Uuid>& photos);
    /// Into the film if one of them is left out, otherwise out of it.
    void toggleInFilm(const std::set<Foundation::Uuid>& photos);
    void chooseMusic();
    void takeMusic(const std::filesystem::path& file);
    void removeMusic();
    /// Asks first where photos would begin to leave the computer. No value: the user's default.
    void chooseProvider(std::optional<ProjectModel::AIProvider> provider);

    void showInFiles(const Foundation::Uuid& photo);

Q_SIGNALS:
    void noticed(const QString& text);
    /// The user did not agree, or nothing had to be asked and it is chosen.
    void providerDecided();

private:
    QWidget* m_window;
    Document::ProjectDocument* m_document;
    Work* m_work;
    WindowServices m_services;
    /// Looks into music and for files.
    Jobs::Job m_errand;
};

} // namespace Shell
