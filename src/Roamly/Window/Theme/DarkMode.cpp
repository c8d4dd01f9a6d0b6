// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/DarkMode.h>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace Theme {

namespace {

constexpr int answerTimeoutMilliseconds = 300;

QString portalPath() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}
QString settingsInterface() {
    return QStringLiteral("org.freedesktop.portal.Settings");
}
QString appearanceGroup() {
    return QStringLiteral("org.freedesktop.appearance");
}
QString schemeKey() {
    return QStringLiteral("color-scheme");
}

} // namespace

DarkMode::DarkMode(Scheme fallback, const QDBusConnection& bus, const QString& portalService, QObject* parent)
    : QObject(parent)
    , m_bus(bus)
    , m_fallback(fallback)
    , m_scheme(fallback) {
    if (!m_bus.isConnected())
        return;
    // A process that has not talked over a bus yet does not know the slot's type by name.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    // From whoever has that path: a portal that starts late, or anew, has an owner that nobody knows yet.
    m_bus.connect(QString{}, portalPath(), settingsInterface(), QStringLiteral("SettingChanged"), this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(portalService);
}

void DarkMode::ask(const QString& portalService) {
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath(), settingsInterface(),
                                                       QStringLiteral("Read"));
    call << appearanceGroup() << schemeKey();
    auto* const answer = new QDBusPendingCallWatcher{m_bus.asyncCall(call, answerTimeoutMilliseconds), this};
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<QDBusVariant> reply = *finished;
        if (!reply.isError())
            take(reply.value().variant());
        finished->deleteLater();
    });
}

void DarkMode::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == appearanceGroup() && key == schemeKey())
        take(value.variant());
}

void DarkMode::take(const QVariant& value) {
    // The portal's Read wraps the value once more than its signal does.
    const QVariant plain = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    const uint preference = plain.toUInt();
    const Scheme scheme = preference == 1 ? Scheme::Dark : preference == 2 ? Scheme::Light : m_fallback;
    if (scheme == m_scheme)
        return;
    m_scheme = scheme;
    Q_EMIT changed(scheme);
}

} // namespace Theme
