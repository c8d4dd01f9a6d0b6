// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ProjectStore.h>
#include <Roamly/Window/Shell/ApplicationSheets.h>
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
    , m_sheets(new ApplicationSheets(m_services, this)) {}

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
        bringForward(play->project ? open(*play->project) : openNew(), activationToken);
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
    if (m_windows.empty())
        return Q_EMIT allClosed();
    m_isQuitting = true;
    m_windows.back()->close();
}

ProjectWindow& Windows::add(const MakeRecoveryPlace& recovery) {
    auto* const window = new ProjectWindow(m_services, recovery);
    m_windows.push_back(window);
    connect(window, &ProjectWindow::newWanted, this, [this] { (void)openNew(); });
    connect(window, &ProjectWindow::openWanted, this,
            [this](const std::filesystem::path& path) { bringForward(open(path), {}); });
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
    if (m_windows.empty())
        Q_EMIT allClosed();
    else if (m_isQuitting)
        quit();
}

} // namespace Shell
