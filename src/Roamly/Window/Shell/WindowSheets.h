// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/TimeLeft.h>
#include <Roamly/Window/Shell/WindowServices.h>
#include <Roamly/Window/Shell/Work.h>

#include <QObject>
#include <QPointer>
#include <optional>
#include <set>

class QWidget;

namespace Sheets {
class ExportSheet;
class ProjectSettingsPopup;
class SourcesManager;
} // namespace Sheets

namespace Shell {

class MusicLength;

/// The sheets of one window: opens them with what the document holds, keeps those that are open true to it,
/// and takes what the user wants back into the document and the work.
class WindowSheets : public QObject {
    Q_OBJECT

public:
    /// Borrows all but the services.
    WindowSheets(QWidget& window, Document::ProjectDocument& document, Work& work, const MusicLength& music,
                 const WindowServices& services);
    ~WindowSheets() override;

    void showExport();
    void showCaptionPrompt();
    void showProjectSettings(const QWidget& button);
    void showSources();
    void showAlbums();
    void showPlace(const std::set<Foundation::Uuid>& photos);

    /// The document or the music changed.
    void refresh();

Q_SIGNALS:
    void providerChosen(std::optional<ProjectModel::AIProvider> provider);
    void importWanted();
    void locateWanted(const Foundation::Uuid& source);

private:
    void showExportState();
    void changeSettings(const ProjectModel::ProjectSettings& settings);

    QWidget* m_window;
    Document::ProjectDocument* m_document;
    Work* m_work;
    const MusicLength* m_music;
    WindowServices m_services;
    Jobs::TimeLeft m_exportTime;
    QPointer<Sheets::ExportSheet> m_export;
    QPointer<Sheets::ProjectSettingsPopup> m_settings;
    QPointer<Sheets::SourcesManager> m_sources;
};

} // namespace Shell
