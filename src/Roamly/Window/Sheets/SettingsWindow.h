// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/AppSettings.h>
#include <Roamly/Window/Sheets/ConnectionTestRow.h>

#include <QDialog>
#include <QString>
#include <functional>

class QListWidget;
class QStackedWidget;

namespace Sheets {

/// The keyring, which may take its time: each function returns at once and answers later, on the GUI thread,
/// or never.
struct KeyStore {
    /// The stored key; empty when there is none.
    std::function<void(std::function<void(const QString& key)> done)> load;
    /// Stores the key, an empty one removes it; answers a problem as a sentence, empty when it went well.
    std::function<void(const QString& key, std::function<void(const QString& problem)> done)> save;
};

/// What the settings window asks of the world.
struct SettingsServices {
    KeyStore keyStore;
    std::function<void(const QString& baseURL, const QString& model,
                       std::function<void(const ConnectionStatus&)> done)>
        testOllama;
    std::function<void(const QString& key, const QString& model,
                       std::function<void(const ConnectionStatus&)> done)>
        testOpenRouter;
};

/// The settings for all projects.
class SettingsWindow : public QDialog {
    Q_OBJECT
public:
    enum class Page { Export, Captions, General };

    SettingsWindow(const Document::AppSettings& settings, bool usesNativeFileDialogs,
                   const SettingsServices& services, QWidget* parent = nullptr);

    void showPage(Page page);

Q_SIGNALS:
    /// The setting's name in the settings file and its new value as text; an empty text of `captionPrompt`
    /// and `geocoderURL` means none.
    void settingChanged(const QString& key, const QString& text);
    void nativeFileDialogsChosen(bool usesNative);

private:
    void addPage(const QString& name, const QString& icon, QWidget* page);

    QListWidget* m_names;
    QStackedWidget* m_pages;
};

} // namespace Sheets
