// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/DesktopNames.h>
#include <Roamly/Platform/SleepInhibitor.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <utility>

namespace Platform {

namespace {

QDBusMessage screenSaverCall(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QStringLiteral("/org/freedesktop/ScreenSaver"),
                                          QStringLiteral("org.freedesktop.ScreenSaver"), method);
}

QDBusMessage portalCall(const QString& path, const QString& interface, const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), path,
                                          QStringLiteral("org.freedesktop.portal.") + interface, method);
}

template <typename Answered>
void call(const QDBusConnection& bus, const QDBusMessage& message, Answered answered) {
    auto* watcher = new QDBusPendingCallWatcher{bus.asyncCall(message)};
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [answered = std::move(answered)](QDBusPendingCallWatcher* ended) {
                         ended->deleteLater();
                         answered(*ended);
                     });
}

} // namespace

/// Outlives its owner while an answer is on its way: what is granted too late is given back at once.
struct SleepInhibitor::State {
    QDBusConnection bus;
    QString reason;
    bool isWanted = true;
    /// Gives back what was granted; empty before.
    std::function<void()> giveBack = {};

    void granted(std::function<void()> undo) {
        if (isWanted)
            giveBack = std::move(undo);
        else
            undo();
    }
    static void askScreenSaver(const std::shared_ptr<State>& state);
    static void askPortal(const std::shared_ptr<State>& state);
};

void SleepInhibitor::State::askScreenSaver(const std::shared_ptr<State>& state) {
    QDBusMessage message = screenSaverCall(QStringLiteral("Inhibit"));
    message << QString::fromUtf8(DesktopNames::program) << state->reason;
    call(state->bus, message, [state](const QDBusPendingReply<unsigned>& reply) {
        if (!reply.isError())
            state->granted([bus = state->bus, cookie = reply.value()] {
                QDBusMessage undo = screenSaverCall(QStringLiteral("UnInhibit"));
                undo << cookie;
                bus.asyncCall(undo);
            });
        else if (state->isWanted)
            askPortal(state);
    });
}

void SleepInhibitor::State::askPortal(const std::shared_ptr<State>& state) {
    constexpr unsigned suspend = 4;
    constexpr unsigned idle = 8;
    QDBusMessage message = portalCall(QStringLiteral("/org/freedesktop/portal/desktop"),
                                      QStringLiteral("Inhibit"), QStringLiteral("Inhibit"));
    message << QString{} << (suspend | idle) << QVariantMap{{QStringLiteral("reason"), state->reason}};
    call(state->bus, message, [state](const QDBusPendingReply<QDBusObjectPath>& reply) {
        if (!reply.isError())
            state->granted([bus = state->bus, request = reply.value().path()] {
                bus.asyncCall(portalCall(request, QStringLiteral("Request"), QStringLiteral("Close")));
            });
    });
}

SleepInhibitor::SleepInhibitor(const QDBusConnection& bus, const std::string& reason)
    : m_state(std::make_shared<State>(State{bus, QString::fromStdString(reason)})) {
    // A call over no connection is never answered, not even with an error.
    if (bus.isConnected())
        State::askScreenSaver(m_state);
}

SleepInhibitor::~SleepInhibitor() {
    m_state->isWanted = false;
    if (m_state->giveBack)
        m_state->giveBack();
}

} // namespace Platform
