// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/FileManager.h>
#include <Roamly/Platform/FileUri.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <utility>

namespace Platform {

struct FileManager::State {
    QDBusConnection bus;
    FolderOpener openFolder;
};

FileManager::FileManager(const QDBusConnection& bus, FolderOpener openFolder)
    : m_state(std::make_shared<const State>(State{bus, std::move(openFolder)})) {}

void FileManager::show(const std::vector<std::filesystem::path>& files,
                       const std::string& activationToken) const {
    if (files.empty())
        return;
    // A call over no connection is never answered, not even with an error.
    if (!m_state->bus.isConnected()) {
        m_state->openFolder(files.front().parent_path());
        return;
    }
    QStringList uris;
    for (const std::filesystem::path& file : files)
        uris << QString::fromStdString(fileUri(file));
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << uris << QString::fromStdString(activationToken);
    auto* watcher = new QDBusPendingCallWatcher{m_state->bus.asyncCall(call)};
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [state = m_state, folder = files.front().parent_path()](QDBusPendingCallWatcher* ended) {
                         ended->deleteLater();
                         if (ended->isError())
                             state->openFolder(folder);
                     });
}

void FileManager::openWithDesktop(const std::filesystem::path& folder) {
    QProcess::startDetached(QStringLiteral("xdg-open"),
                            {QFile::decodeName(QByteArray::fromStdString(folder.string()))});
}

} // namespace Platform
