// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/DesktopNames.h>
#include <Roamly/Platform/Notifications.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <optional>
#include <utility>

namespace Platform {

namespace {

QDBusMessage callTo(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                          QStringLiteral("/org/freedesktop/Notifications"),
                                          QStringLiteral("org.freedesktop.Notifications"), method);
}

} // namespace

struct Notifications::State {
    QDBusConnection bus;
    /// The service's name for what is shown; 0 when nothing is.
    unsigned id = 0;
    bool isSending = false;
    /// What to do once it is known by which name the one on its way goes.
    std::function<void()> next = {};
};

Notifications::Notifications(const QDBusConnection& bus)
    : m_state(std::make_shared<State>(State{bus})) {}

void Notifications::show(const std::string& title, const std::string& text) {
    if (m_state->isSending)
        m_state->next = [state = std::weak_ptr{m_state}, title, text] {
            if (const auto alive = state.lock())
                send(alive, title, text);
        };
    else
        send(m_state, title, text);
}

void Notifications::close() {
    const auto closeNow = [](const std::shared_ptr<State>& state) {
        if (state->id == 0)
            return;
        QDBusMessage call = callTo(QStringLiteral("CloseNotification"));
        call << std::exchange(state->id, 0U);
        state->bus.asyncCall(call);
    };
    if (m_state->isSending)
        m_state->next = [state = std::weak_ptr{m_state}, closeNow] {
            if (const auto alive = state.lock())
                closeNow(alive);
        };
    else
        closeNow(m_state);
}

void Notifications::send(const std::shared_ptr<State>& state, const std::string& title,
                         const std::string& text) {
    // A call over no connection is never answered, not even with an error.
    if (!state->bus.isConnected())
        return;
    QDBusMessage call = callTo(QStringLiteral("Notify"));
    // The text may hold markup by the protocol, and ours is none.
    call << QString::fromUtf8(DesktopNames::program) << state->id
         << QString::fromUtf8(DesktopNames::identifier) << QString::fromStdString(title)
         << QString::fromStdString(text).toHtmlEscaped() << QStringList{}
         << QVariantMap{{QStringLiteral("desktop-entry"), QString::fromUtf8(DesktopNames::identifier)}} << -1;
    state->isSending = true;
    auto* watcher = new QDBusPendingCallWatcher{state->bus.asyncCall(call)};
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [state](QDBusPendingCallWatcher* ended) {
                         ended->deleteLater();
                         const QDBusPendingReply<unsigned> reply = *ended;
                         state->id = reply.isError() ? 0 : reply.value();
                         state->isSending = false;
                         if (const auto next = std::exchange(state->next, {}))
                             next();
                     });
}

} // namespace Platform
