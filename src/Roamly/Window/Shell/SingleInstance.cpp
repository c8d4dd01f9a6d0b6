// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/SingleInstance.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QUrl>

namespace Shell {

namespace {

/// Milliseconds in which a running program answers, busy as it may be.
constexpr int answerTime = 5000;

QString uriOf(const std::filesystem::path& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path.string())).toString(QUrl::FullyEncoded);
}

QStringList urisOf(const OpenFiles& files) {
    QStringList uris;
    for (const auto* const paths : {&files.projects, &files.photos}) {
        for (const std::filesystem::path& path : *paths)
            uris << uriOf(path);
    }
    return uris;
}

QVariantList wordsOf(const PlayProject& play) {
    QVariantList words{QStringLiteral("--from=%1").arg(play.from)};
    if (play.inWindow)
        words << QStringLiteral("--window");
    if (play.project)
        words << uriOf(*play.project);
    return words;
}

QVariantMap platformData(const QString& token) {
    if (token.isEmpty())
        return {};
    return {{QStringLiteral("activation-token"), token}, {QStringLiteral("desktop-startup-id"), token}};
}

} // namespace

QString objectPathOf(const QString& name) {
    return QLatin1Char('/') + QString{name}.replace(QLatin1Char('.'), QLatin1Char('/'));
}

SingleInstance::SingleInstance(const QDBusConnection& bus, const QString& name, QObject* parent)
    : QObject(parent)
    , m_bus(bus)
    , m_name(name) {
    connect(&m_service, &ApplicationService::requested, this, &SingleInstance::requested);
}

bool SingleInstance::claim() {
    if (!m_bus.isConnected())
        return true;
    // There before the name is, or who asks at once finds nobody.
    m_bus.registerObject(objectPathOf(m_name), &m_service, QDBusConnection::ExportAllSlots);
    const auto reply = m_bus.interface()->registerService(m_name, QDBusConnectionInterface::DontQueueService,
                                                          QDBusConnectionInterface::DontAllowReplacement);
    return !reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

bool SingleInstance::handOver(const LaunchRequest& request, const QString& activationToken) {
    const auto call = [&](const QString& method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            m_name, objectPathOf(m_name), QStringLiteral("org.freedesktop.Application"), method);
        message.setArguments(arguments);
        return m_bus.call(message, QDBus::Block, answerTime).type() == QDBusMessage::ReplyMessage;
    };
    const QVariantMap data = platformData(activationToken);
    if (const auto* const files = std::get_if<OpenFiles>(&request))
        return call(QStringLiteral("Open"), {urisOf(*files), data});
    if (const auto* const play = std::get_if<PlayProject>(&request))
        return call(QStringLiteral("ActivateAction"), {QStringLiteral("play"), wordsOf(*play), data});
    if (const auto* const show = std::get_if<ShowWindow>(&request); show != nullptr && show->inNewWindow)
        return call(QStringLiteral("ActivateAction"), {QStringLiteral("new"), QVariantList{}, data});
    if (std::holds_alternative<Serve>(request))
        return true;
    return call(QStringLiteral("Activate"), {data});
}

} // namespace Shell
