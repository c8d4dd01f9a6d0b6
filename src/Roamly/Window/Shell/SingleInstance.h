// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/ApplicationService.h>
#include <Roamly/Window/Shell/LaunchRequest.h>

#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace Shell {

/// One running program for a session: the first holds the name on the session bus and is asked by the later
/// ones, which end then. Without a bus it runs alone.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// `name` is the application's identifier.
    SingleInstance(const QDBusConnection& bus, const QString& name, QObject* parent = nullptr);

    /// True when this is the one that runs, from now on; false when another one is.
    [[nodiscard]] bool claim();

    /// Has the other one carry out the request; false when it does not answer.
    [[nodiscard]] bool handOver(const LaunchRequest& request, const QString& activationToken);

Q_SIGNALS:
    void requested(const Shell::LaunchRequest& request, const QString& activationToken);

private:
    QDBusConnection m_bus;
    QString m_name;
    ApplicationService m_service;
};

/// "/app/roamly/Roamly" for "app.roamly.Roamly".
[[nodiscard]] QString objectPathOf(const QString& name);

} // namespace Shell
