// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/Application.h>
#include <Roamly/Window/Shell/SingleInstance.h>
#include <Roamly/Window/Shell/Windows.h>
#include <Roamly/Window/Theme/Theme.h>

#include <QApplication>
#include <QDBusConnection>
#include <QTimer>
#include <filesystem>

namespace Shell {

namespace {

const QString identifier = QStringLiteral("app.roamly.Roamly");

/// What whoever started this program handed over to bring the window to the front.
QString activationToken() {
    for (const char* const name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        const QString token = qEnvironmentVariable(name);
        if (!token.isEmpty())
            return token;
    }
    return {};
}

} // namespace

int run(int& argumentCount, char* arguments[]) {
    const QString token = activationToken();
    QApplication application{argumentCount, arguments};
    // No display name: Qt would add it to every title, also to that of "Roamly Help".
    QApplication::setApplicationName(QStringLiteral("Roamly"));
    QGuiApplication::setDesktopFileName(identifier);
    QApplication::setQuitOnLastWindowClosed(false);

    const LaunchRequest request =
        launchRequest(QApplication::arguments().mid(1), std::filesystem::current_path());
    SingleInstance instance{QDBusConnection::sessionBus(), identifier};
    if (!instance.claim() && instance.handOver(request, token))
        return 0;

    Theme::apply(application);
    Windows windows{desktopServices()};
    QObject::connect(&instance, &SingleInstance::requested, &windows, &Windows::carryOut);
    QObject::connect(&windows, &Windows::allClosed, &application, &QApplication::quit);
    windows.carryOut(request, token);
    QTimer::singleShot(0, &windows, [&] { windows.offer(leftOvers()); });
    return QApplication::exec();
}

} // namespace Shell
