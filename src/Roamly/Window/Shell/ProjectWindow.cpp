// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Document/FilmSummary.h>
#include <Roamly/Document/PlaybackSettings.h>
#include <Roamly/Window/Sheets/PrivacyBanner.h>
#include <Roamly/Window/Shell/EmptyState.h>
#include <Roamly/Window/Shell/LaunchRequest.h>
#include <Roamly/Window/Shell/MainToolBar.h>
#include <Roamly/Window/Shell/Menus.h>
#include <Roamly/Window/Shell/Notices.h>
#include <Roamly/Window/Shell/ProjectWindow.h>
#include <Roamly/Window/Shell/Questions.h>
#include <Roamly/Window/Shell/ReviewArea.h>
#include <Roamly/Window/Shell/StatusLine.h>
#include <Roamly/Window/Shell/Strips.h>
#include <Roamly/Window/Shell/WindowCommands.h>
#include <Roamly/Window/Shell/WindowSheets.h>

#include <QCloseEvent>
#include <QDropEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <array>

namespace Shell {

namespace {

constexpr std::array allWork{WorkKind::importing, WorkKind::analysis, WorkKind::captions,
                             WorkKind::exportMovie};

} // namespace

ProjectWindow::ProjectWindow(const WindowServices& services)
    : ProjectWindow(services, services.recovery) {}

ProjectWindow::ProjectWindow(const WindowServices& services, const MakeRecoveryPlace& recovery)
    : m_services(services)
    , m_flow(m_document, questionsOver(this, services.choosers))
    , m_recovery(m_document, recovery([this] { return m_flow.file().path(); }))
    , m_missingPhotos(m_document, services.checkPhotos)
    , m_subscription(m_document.addListener([this](const Document::ProjectDifference&) {
        m_recovery.update();
        m_refresh.start();
    }))
    , m_work(services.engines) {
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(0);
    build();
    connectParts();
    showDocument();
}

ProjectWindow::~ProjectWindow() = default;

void ProjectWindow::build() {
    setMinimumSize(1024, 640);
    resize(1280, 800);
    setAcceptDrops(true);
    m_toolBar = new MainToolBar(m_actions, this);
    addToolBar(m_toolBar);
    fillMenuBar(*menuBar(), m_actions, [this](QMenu& menu) {
        fillRecentMenu(menu, m_services.recentProjects(),
                       [this](const auto& path) { Q_EMIT openWanted(path); });
    });
    for (const auto& [intent, action] : m_actions.all())
        addAction(action);

    m_review = new ReviewArea(m_document, m_services.thumbnails, m_services.photo);
    m_actions[Intent::details]->setChecked(m_services.showsDetails());
    m_review->showDetails(m_services.showsDetails());
    m_banner = new Sheets::PrivacyBanner;
    m_empty = new EmptyState;
    m_pages = new QStackedWidget;
    m_pages->addWidget(m_empty);
    m_pages->addWidget(m_review);
    m_strips = new Strips(m_services.now);
    m_status = new StatusLine;
    m_status->setZoom(m_review->zoom());

    auto* const content = new QWidget;
    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_banner);
    layout->addWidget(m_pages, 1);
    layout->addWidget(m_strips);
    layout->addWidget(m_status);
    setCentralWidget(content);
    m_notices = new Notices(m_pages);
    m_commands = new WindowCommands(*this, m_document, m_work, m_services);
    m_sheets = new WindowSheets(*this, m_document, m_work, m_musicLength, m_services);
}

void ProjectWindow::connectParts() {
    connect(&m_actions, &Actions::wanted, this, &ProjectWindow::carryOut);
    connect(&m_refresh, &QTimer::timeout, this, &ProjectWindow::showDocument);
    connect(&m_flow, &DocumentFlow::changed, this, [this] {
        showTitle();
        showWaiting();
        showSituation();
    });
    connect(&m_flow, &DocumentFlow::loaded, this, &ProjectWindow::showDocument);
    connect(&m_flow, &DocumentFlow::loaded, &m_recovery, &RecoveryKeeper::update);
    connect(&m_flow, &DocumentFlow::leavingRefused, this, &ProjectWindow::closingRefused);
    connect(&m_flow, &DocumentFlow::noticed, this, &ProjectWindow::notice);
    const auto remember = [this] {
        if (const auto& path = m_flow.file().path())
            m_services.addRecentProject(*path);
    };
    connect(&m_flow, &DocumentFlow::loaded, this, remember);
    connect(&m_flow, &DocumentFlow::saved, this, [this, remember] {
        remember();
        m_recovery.update();
        showDocument();
    });

    connect(&m_musicLength, &MusicLength::changed, this, &ProjectWindow::showSummary);
    connect(m_review, &ReviewArea::markedChanged, this, &ProjectWindow::showSituation);
    connect(m_review, &ReviewArea::placeWanted, m_sheets, &WindowSheets::showPlace);
    connect(m_review, &ReviewArea::captionWanted, m_commands, &WindowCommands::regenerateCaption);
    connect(m_review, &ReviewArea::fileWanted, m_commands, &WindowCommands::showInFiles);
    connect(m_review, &ReviewArea::dropped, this, &ProjectWindow::take);
    connect(m_sheets, &WindowSheets::providerChosen, m_commands, &WindowCommands::chooseProvider);
    connect(m_sheets, &WindowSheets::importWanted, this, [this] { carryOut(Intent::importFolder); });
    connect(m_commands, &WindowCommands::providerDecided, m_sheets, &WindowSheets::refresh);
    connect(&m_musicLength, &MusicLength::changed, m_sheets, &WindowSheets::refresh);
    connect(m_empty, &EmptyState::importWanted, this, [this] { carryOut(Intent::importFolder); });
    connect(m_empty, &EmptyState::openWanted, this, &ProjectWindow::openWanted);
    connect(m_commands, &WindowCommands::noticed, this, &ProjectWindow::notice);

    connect(&m_work, &Work::changed, this, &ProjectWindow::showWork);
    connect(&m_work, &Work::ended, this, &ProjectWindow::finishWork);
    connect(&m_work, &Work::begun, this, [this](WorkKind kind) {
        if (kind == WorkKind::exportMovie)
            m_awake = m_services.keepAwake(QStringLiteral("Exporting a movie"));
    });
    connect(&m_flow, &DocumentFlow::loaded, &m_missingPhotos, &MissingPhotos::check);
    connect(&m_missingPhotos, &MissingPhotos::noticed, this, &ProjectWindow::notice);
    connect(m_sheets, &WindowSheets::locateWanted, this, [this] { carryOut(Intent::locateMissing); });
    connect(m_strips, &Strips::cancelled, &m_work, &Work::cancel);
    connect(m_strips, &Strips::retryWanted, m_commands, &WindowCommands::analyze);
    connect(m_strips, &Strips::locateWanted, this, [this] { carryOut(Intent::locateMissing); });
    connect(m_strips, &Strips::waitingGivenUp, &m_flow, &DocumentFlow::stopWaiting);
}

void ProjectWindow::importPhotos(const Paths& folders) {
    m_commands->importPhotos(folders);
}

void ProjectWindow::notice(const QString& text) {
    if (!text.isEmpty())
        m_notices->show(text);
}

void ProjectWindow::carryOut(Intent intent) {
    // What is being typed counts as written, for whatever is done with the project now.
    if (intent != Intent::editCaption)
        m_review->finishEditing();
    switch (intent) {
    case Intent::newProject:
        return Q_EMIT newWanted();
    case Intent::open:
        return m_services.choosers.project(
            this, [this](const std::filesystem::path& path) { Q_EMIT openWanted(path); });
    case Intent::save:
        return m_flow.save();
    case Intent::saveAs:
        return m_flow.saveAs();
    case Intent::revert:
        return m_flow.revert();
    case Intent::importFolder:
        return m_services.choosers.foldersToImport(this,
                                                   [this](const Paths& folders) { importPhotos(folders); });
    case Intent::close:
        return static_cast<void>(close());
    case Intent::quit:
        return Q_EMIT quitWanted();
    case Intent::undo:
        return m_document.undo();
    case Intent::redo:
        return m_document.redo();
    case Intent::selectAll:
        return m_review->selectAll();
    case Intent::selectNone:
        return m_review->selectNone();
    case Intent::toggleInFilm:
        return m_commands->toggleInFilm(m_review->marked());
    case Intent::remove:
        return m_commands->remove(m_review->marked());
    case Intent::regenerateCaption:
        return m_commands->regenerateCaption(*m_review->marked().begin());
    case Intent::showInFiles:
        return m_commands->showInFiles(*m_review->marked().begin());
    case Intent::sortByDate:
        return m_commands->sortByDate();
    case Intent::analyze:
        return m_commands->analyze();
    case Intent::generateCaptions:
        return m_commands->generateCaptions();
    case Intent::resetAnalysis:
        return m_commands->resetAnalysis();
    case Intent::chooseMusic:
        return m_commands->chooseMusic();
    case Intent::noMusic:
        return m_commands->removeMusic();
    case Intent::play:
        return Q_EMIT playWanted();
    case Intent::fullScreen:
        return setWindowState(windowState() ^ Qt::WindowFullScreen);
    case Intent::importAlbum:
        return m_sheets->showAlbums();
    case Intent::find:
        return m_review->find();
    case Intent::settings:
        return Q_EMIT settingsWanted();
    case Intent::editCaption:
        return m_review->editCaption();
    case Intent::setPlace:
        return m_sheets->showPlace(m_review->marked());
    case Intent::captionPrompt:
        return m_sheets->showCaptionPrompt();
    case Intent::manageSources:
        return m_sheets->showSources();
    case Intent::exportMovie:
        return m_sheets->showExport();
    case Intent::projectSettings:
        return m_sheets->showProjectSettings(*m_toolBar->projectSettingsButton());
    case Intent::largerPhotos:
        return m_review->resizePhotos(1);
    case Intent::smallerPhotos:
        return m_review->resizePhotos(-1);
    case Intent::help:
        return Q_EMIT helpWanted({});
    case Intent::shortcuts:
        return Q_EMIT helpWanted(QStringLiteral("Keyboard Shortcuts"));
    case Intent::about:
        return tellAbout(this);
    case Intent::locateMissing:
        return m_services.choosers.folderOfMissing(
            this, [this](const std::filesystem::path& folder) { m_missingPhotos.locate(folder); });
    case Intent::openPhoto:
        return m_review->openPhoto();
    case Intent::compareGroup:
        return m_review->compareGroup();
    case Intent::details:
        m_services.setShowsDetails(m_actions[intent]->isChecked());
        return m_review->showDetails(m_actions[intent]->isChecked());
    }
}

void ProjectWindow::showDocument() {
    const bool hasPhotos = !m_document.project().photos.empty();
    if (!hasPhotos)
        m_empty->setRecentProjects(m_services.recentProjects());
    const bool photosCame = hasPhotos && m_pages->currentWidget() == m_empty;
    m_pages->setCurrentWidget(hasPhotos ? static_cast<QWidget*>(m_review) : m_empty);
    m_review->zoom()->setVisible(hasPhotos);
    if (photosCame)
        m_review->setFocus();
    m_musicLength.follow(m_document.project());
    showTitle();
    showSituation();
    showSummary();
    showBanner();
    m_sheets->refresh();
}

void ProjectWindow::showTitle() {
    setWindowTitle(m_flow.name() + QStringLiteral("[*] — Roamly"));
    setWindowModified(m_flow.isModified());
    if (const auto& path = m_flow.file().path())
        setWindowFilePath(QString::fromStdString(path->string()));
}

void ProjectWindow::showBanner() {
    const auto alert = Document::privacyAlert(
        Document::effectiveProvider(m_document.project().settings, m_services.settings()));
    m_banner->setText(alert ? QString::fromStdString(*alert) : QString{});
}

void ProjectWindow::showWaiting() {
    m_strips->showWaiting(m_flow.file().state().isWaiting ? m_flow.name() : QString{});
}

void ProjectWindow::showSummary() {
    const Timeline::EffectiveSettings settings =
        Document::effectiveSettings(m_document.project().settings, m_services.settings());
    m_status->setText(QString::fromStdString(
        Document::describe(Document::summarize(m_document.project(), settings, m_musicLength.seconds()))));
}

Situation ProjectWindow::situation() const {
    Situation now = situationOf(m_document, m_services.settings());
    now.marked = m_review->marked().size();
    now.isMarkedInGroup = m_review->isMarkedInGroup();
    now.hasFile = m_flow.file().path().has_value();
    now.isImporting = m_work.isRunning(WorkKind::importing);
    now.isAnalyzing = m_work.isRunning(WorkKind::analysis);
    now.isCaptioning = m_work.isRunning(WorkKind::captions);
    now.isExporting = m_work.isRunning(WorkKind::exportMovie);
    return now;
}

void ProjectWindow::showSituation() {
    const Situation now = situation();
    m_actions.show(now);
    m_review->setWhyNoCaption(QString::fromStdString(whyNoCaption(now)));
    m_strips->showMissing(now.missing);
}

void ProjectWindow::showWork(WorkKind kind) {
    m_strips->showWork(kind, m_work.row(kind));
    if (kind == WorkKind::analysis) {
        const auto& state = m_work.analysis().state();
        QStringList issues;
        for (const std::string& issue : state.issues)
            issues << QString::fromStdString(issue);
        m_strips->showIssues(issues, state.canRetry);
    }
    m_refresh.start();
}

void ProjectWindow::finishWork(WorkKind kind) {
    QString text;
    switch (kind) {
    case WorkKind::importing:
        text = endSentence(m_work.imports().state());
        break;
    case WorkKind::analysis:
        text = endSentence(m_work.analysis().state());
        break;
    case WorkKind::captions:
        text = endSentence(m_work.captions().state());
        break;
    case WorkKind::exportMovie:
        text = endSentence(m_work.exports().state());
        m_awake.reset();
        break;
    }
    if (text.isEmpty())
        return;
    notice(text);
    if (!isActiveWindow())
        m_services.notify(m_flow.name(), text);
}

void ProjectWindow::closeEvent(QCloseEvent* event) {
    if (m_mayClose)
        return event->accept();
    event->ignore();
    m_review->finishEditing();
    const auto leave = [this] { m_flow.askToLeave([this] { closeForGood(); }); };
    if (!m_work.isRunning(WorkKind::exportMovie))
        return leave();
    askToEndExport(this, [this, leave](bool agreed) {
        if (agreed)
            leave();
        else
            Q_EMIT closingRefused();
    });
}

void ProjectWindow::closeForGood() {
    m_mayClose = true;
    m_subscription.reset();
    for (const WorkKind kind : allWork)
        m_work.cancel(kind);
    m_recovery.finish();
    close();
    Q_EMIT closed();
}

void ProjectWindow::take(const QList<QUrl>& urls) {
    const DroppedFiles dropped = droppedFiles(urls);
    for (const std::filesystem::path& project : dropped.projects)
        Q_EMIT openWanted(project);
    if (!dropped.music.empty())
        m_commands->takeMusic(dropped.music.front());
    if (!dropped.photos.empty())
        importPhotos(dropped.photos);
}

void ProjectWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!localFiles(event->mimeData()->urls()).empty())
        event->acceptProposedAction();
}

void ProjectWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    take(event->mimeData()->urls());
}

void ProjectWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_flow.lookAtFile();
    QMainWindow::changeEvent(event);
}

} // namespace Shell
