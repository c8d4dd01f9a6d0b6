// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Theme/Palettes.h>

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace Theme {

/// Whether the desktop wants light or dark: what its settings portal says, now and whenever it changes;
/// before it has answered, and where there is none, what the platform's own palette looked like. Waits for
/// nothing. GUI thread.
class DarkMode : public QObject {
    Q_OBJECT
public:
    /// `fallback` is the platform's. `portalService` is the portal's name on the bus.
    DarkMode(Scheme fallback, const QDBusConnection& bus,
             const QString& portalService = QStringLiteral("org.freedesktop.portal.Desktop"),
             QObject* parent = nullptr);

    [[nodiscard]] Scheme scheme() const { return m_scheme; }

Q_SIGNALS:
    void changed(Theme::Scheme scheme);

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask(const QString& portalService);
    void take(const QVariant& value);

    QDBusConnection m_bus;
    Scheme m_fallback;
    Scheme m_scheme;
};

} // namespace Theme
