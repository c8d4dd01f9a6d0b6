// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Window/Shell/Actions.h>
#include <Roamly/Window/Shell/DocumentFlow.h>
#include <Roamly/Window/Shell/MissingPhotos.h>
#include <Roamly/Window/Shell/MusicLength.h>
#include <Roamly/Window/Shell/WindowServices.h>
#include <Roamly/Window/Shell/Work.h>

#include <QMainWindow>
#include <QTimer>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

class QStackedWidget;

namespace Sheets {
class PrivacyBanner;
} // namespace Sheets

namespace Shell {

class EmptyState;
class MainToolBar;
class Notices;
class ReviewArea;
class StatusLine;
class Strips;
class WindowCommands;
class WindowSheets;

/// The window of one project. It puts its parts together and shows what they have to show; what the user
/// wants goes to the document, the work and the sheets.
class ProjectWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit ProjectWindow(const WindowServices& services);
    /// A window in which something is recovered goes on in the place where it was kept.
    ProjectWindow(const WindowServices& services, const MakeRecoveryPlace& recovery);
    ~ProjectWindow() override;

    [[nodiscard]] Document::ProjectDocument& document() { return m_document; }
    [[nodiscard]] DocumentFlow& flow() { return m_flow; }
    [[nodiscard]] Work& work() { return m_work; }
    [[nodiscard]] const Actions& actions() const { return m_actions; }

    /// Reads the project into this window, which must be untouched.
    void open(const std::filesystem::path& project) { m_flow.open(project); }
    void importPhotos(const Paths& folders);
    /// Says something that goes by itself.
    void notice(const QString& text);

Q_SIGNALS:
    void newWanted();
    void openWanted(const std::filesystem::path& project);
    void quitWanted();
    void playWanted();
    void settingsWanted();
    /// The help at a page; an empty name is the first one.
    void helpWanted(const QString& page);
    /// It is closed for good: nothing of it is needed any more.
    void closed();
    /// The user thought better of closing it.
    void closingRefused();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void build();
    void connectParts();
    void carryOut(Intent intent);
    void showDocument();
    void showTitle();
    void showSituation();
    void showSummary();
    void showWaiting();
    void showBanner();
    void take(const QList<QUrl>& urls);
    void showWork(WorkKind kind);
    void finishWork(WorkKind kind);
    [[nodiscard]] Situation situation() const;
    void closeForGood();

    WindowServices m_services;
    Document::ProjectDocument m_document;
    DocumentFlow m_flow;
    Actions m_actions;
    RecoveryKeeper m_recovery;
    /// Several changes in one go are shown once.
    QTimer m_refresh;
    MusicLength m_musicLength;
    MissingPhotos m_missingPhotos;
    Document::ProjectDocument::Subscription m_subscription;
    bool m_mayClose = false;
    std::shared_ptr<void> m_awake;

    MainToolBar* m_toolBar = nullptr;
    QStackedWidget* m_pages = nullptr;
    ReviewArea* m_review = nullptr;
    EmptyState* m_empty = nullptr;
    Strips* m_strips = nullptr;
    StatusLine* m_status = nullptr;
    Notices* m_notices = nullptr;
    WindowCommands* m_commands = nullptr;
    WindowSheets* m_sheets = nullptr;
    Sheets::PrivacyBanner* m_banner = nullptr;
    /// Last, so that it ends first: what it runs changes the document.
    Work m_work;
};

} // namespace Shell
