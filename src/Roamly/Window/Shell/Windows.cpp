// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <Roamly/Document/ProjectStore.h>
#include <Roamly/Window/Shell/ApplicationSheets.h>
#include <Roamly/Window/Shell/Players.h>
#include <Roamly/Window/Shell/ProjectWindow.h>
#include <Roamly/Window/Shell/Questions.h>
#include <Roamly/Window/Shell/Windows.h>

#include <QApplication>
#include <algorithm>
#include <system_error>
#include <utility>

namespace Shell {

namespace {

/// Where a path leads, so that a project is known by whatever way it is named.
std::filesystem::path place(const std::filesystem::path& path) {
    std::error_code error;
    const auto found = std::filesystem::weakly_canonical(path, error);
    return error ? path.lexically_normal() : found;
}

} // namespace

Windows::Windows(WindowServices services, QObject* parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_sheets(new ApplicationSheets(m_services, this))
    , m_players(new Players(m_services, this)) {
    connect(m_players, &Players::allClosed, this, &Windows::tellIfAllClosed);
}

Windows::~Windows() {
    for (ProjectWindow* const window : std::exchange(m_windows, {}))
        delete window;
}

void Windows::carryOut(const LaunchRequest& request, const QString& activationToken) {
    if (const auto* const show = std::get_if<ShowWindow>(&request)) {
        ProjectWindow& window = show->inNewWindow || m_windows.empty() ? openNew() : *m_windows.back();
        bringForward(window, activationToken);
    } else if (const auto* const files = std::get_if<OpenFiles>(&request)) {
        for (const std::filesystem::path& project : files->projects)
            bringForward(open(project), activationToken);
        if (!files->photos.empty()) {
            ProjectWindow& window = openNew();
            bringForward(window, activationToken);
            window.importPhotos(files->photos);
        }
    } else if (const auto* const play = std::get_if<PlayProject>(&request)) {
        this->play(*play, activationToken);
    }
}

void Windows::play(const PlayProject& request, const QString& activationToken) {
    if (request.project)
        return play(*request.project, request.from, request.inWindow);
    ProjectWindow& window = openNew();
    bringForward(window, activationToken);
    m_services.choosers.project(&window, [this, request](const std::filesystem::path& project) {
        play(project, request.from, request.inWindow);
    });
}

void Windows::play(const std::filesystem::path& project, double from, bool inWindow) {
    try {
        const QString name = QString::fromStdString(Foundation::displayText(project.stem()));
        m_players->play(Document::ProjectStore::load(project).project, name, from, inWindow);
    } catch (const Document::ProjectStoreError&) {
        // Its window tells why it cannot be read.
        bringForward(open(project), {});
    }
}

ProjectWindow& Windows::openNew() {
    ProjectWindow& window = add(m_services.recovery);
    window.show();
    return window;
}

ProjectWindow& Windows::open(const std::filesystem::path& project) {
    const std::filesystem::path wanted = place(project);
    for (ProjectWindow* const window : m_windows) {
        const auto& path = window->flow().openingOrOpen();
        if (path && place(*path) == wanted)
            return *window;
    }
    const auto untouched =
        std::ranges::find_if(m_windows, [](ProjectWindow* window) { return window->flow().isUntouched(); });
    ProjectWindow& window = untouched != m_windows.end() ? **untouched : add(m_services.recovery);
    window.open(wanted);
    window.show();
    return window;
}

void Windows::offer(std::vector<LeftOver> leftOvers) {
    if (leftOvers.empty() || m_windows.empty())
        return;
    const LeftOver first = leftOvers.front();
    leftOvers.erase(leftOvers.begin());
    const auto then = [this, first, rest = std::move(leftOvers)](RecoveryAnswer answer) {
        if (answer == RecoveryAnswer::Recover)
            recover(first);
        else if (answer == RecoveryAnswer::Discard) {
            if (const auto place = first.take([] { return std::nullopt; }))
                place->remove();
        }
        offer(rest);
    };
    askToRecover(m_windows.back(), first.original, first.written, then);
}

void Windows::recover(const LeftOver& leftOver) {
    try {
        // Read before it is taken: a copy that cannot be read stays where it is.
        ProjectModel::Project project = Document::ProjectStore::load(leftOver.copy).project;
        ProjectWindow& window = add([&](const ProjectPath& path) {
            const auto place = leftOver.take(path);
            return place ? *place : m_services.recovery(path);
        });
        window.show();
        window.flow().restore(std::move(project), leftOver.original);
    } catch (const Document::ProjectStoreError& error) {
        tell(m_windows.back(), QString::fromUtf8(error.what()));
    }
}

void Windows::quit() {
    if (m_windows.empty()) {
        m_players->closeAll();
        return tellIfAllClosed();
    }
    m_isQuitting = true;
    m_windows.back()->close();
}

ProjectWindow& Windows::add(const MakeRecoveryPlace& recovery) {
    auto* const window = new ProjectWindow(m_services, recovery);
    m_windows.push_back(window);
    connect(window, &ProjectWindow::newWanted, this, [this] { (void)openNew(); });
    connect(window, &ProjectWindow::openWanted, this,
            [this](const std::filesystem::path& path) { bringForward(open(path), {}); });
    connect(window, &ProjectWindow::playWanted, this, [this, window] {
        m_players->play(window->document().project(), window->flow().name(), 0, false);
    });
    connect(window, &ProjectWindow::settingsWanted, m_sheets, &ApplicationSheets::showSettings);
    connect(window, &ProjectWindow::helpWanted, m_sheets, &ApplicationSheets::showHelp);
    connect(window, &ProjectWindow::quitWanted, this, &Windows::quit);
    connect(window, &ProjectWindow::closingRefused, this, [this] { m_isQuitting = false; });
    connect(window, &ProjectWindow::closed, this, [this, window] { remove(window); });
    return *window;
}

void Windows::bringForward(ProjectWindow& window, const QString& activationToken) {
    if (!activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    if (window.isMinimized())
        window.showNormal();
    else
        window.show();
    window.raise();
    window.activateWindow();
}

void Windows::remove(ProjectWindow* window) {
    std::erase(m_windows, window);
    window->deleteLater();
    if (m_windows.empty() && !m_isQuitting)
        tellIfAllClosed();
    else if (m_isQuitting)
        quit();
}

void Windows::tellIfAllClosed() {
    if (m_windows.empty() && m_players->areAllClosed())
        Q_EMIT allClosed();
}

} // namespace Shell
