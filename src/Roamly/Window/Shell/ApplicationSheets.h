// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/WindowServices.h>

#include <QObject>
#include <QPointer>
#include <QString>

namespace Sheets {
class HelpWindow;
class SettingsWindow;
} // namespace Sheets

namespace Shell {

class Errands;

/// The windows that belong to no project: the settings and the help, one of each.
class ApplicationSheets : public QObject {
    Q_OBJECT

public:
    explicit ApplicationSheets(const WindowServices& services, QObject* parent = nullptr);
    ~ApplicationSheets() override;

    void showSettings();
    /// An empty name: the first page.
    void showHelp(const QString& page);

Q_SIGNALS:
    void settingsChanged();

private:
    WindowServices m_services;
    Errands* m_errands;
    QPointer<Sheets::SettingsWindow> m_settings;
    QPointer<Sheets::HelpWindow> m_help;
};

} // namespace Shell
