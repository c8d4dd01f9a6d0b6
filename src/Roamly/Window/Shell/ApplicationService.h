// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/LaunchRequest.h>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace Shell {

/// What the desktop and later starts of the program may ask of the running one: the interface
/// org.freedesktop.Application.
class ApplicationService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    using QObject::QObject;

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameter, const QVariantMap& platformData);

Q_SIGNALS:
    /// `activationToken` lets a window come to the front; it may be empty.
    void requested(const Shell::LaunchRequest& request, const QString& activationToken);
};

} // namespace Shell
