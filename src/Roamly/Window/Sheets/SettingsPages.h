// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Sheets/SettingsWindow.h>

#include <QWidget>
#include <functional>

class QLineEdit;

/// The pages of the settings window. Each is built from values and tells each change by `changed(key, text)`.
namespace Sheets {

using SettingChanged = std::function<void(const QString& key, const QString& text)>;

[[nodiscard]] QWidget* exportPage(const Document::AppSettings& settings, const SettingChanged& changed);
[[nodiscard]] QWidget* captionsPage(const Document::AppSettings& settings, const SettingsServices& services,
                                    const SettingChanged& changed);
[[nodiscard]] QWidget* generalPage(const Document::AppSettings& settings, bool usesNativeFileDialogs,
                                   const SettingChanged& changed,
                                   const std::function<void(bool)>& nativeChosen);

/// A masked field for the key, filled from the key store and saved with each edit; what could not be done is
/// told in `problem`.
[[nodiscard]] QLineEdit* keyField(const KeyStore& store, QLabel* problem);

} // namespace Sheets
